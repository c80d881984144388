#pragma once

#include <string>

namespace lunoval::testing {

struct CommandResult {
    int status = 0;
    std::string out;
    std::string err;
};

// Runs `lunoval <arguments>` through the shell, with `environment` (such as "A=1 B=2") set.
CommandResult runLunoval(const std::string& arguments, const std::string& environment = "");

}  // namespace lunoval::testing
