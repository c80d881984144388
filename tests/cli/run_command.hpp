#pragma once

#include <filesystem>
#include <string>

namespace lunoval::testing {

struct CommandResult {
    int status = 0;
    std::string out;
    std::string err;
};

// Runs `lunoval <arguments>` through the shell, with `environment` (such as "A=1 B=2") set.
CommandResult runLunoval(const std::string& arguments, const std::string& environment = "");

// The environment of a fresh user whose settings, data and runtime folders all live in `home`.
std::string freshHome(const std::filesystem::path& home);

long countOf(const std::string& text, const std::string& part);

}  // namespace lunoval::testing
