#pragma once

#include <string>

namespace lunoval {

// The shortest text that reads back as the same double, as the phone prints numbers in its
// log lines: "48.8566", "24.0", "1e-05".
std::string doubleDescription(double value);

}  // namespace lunoval
