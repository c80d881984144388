#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lunoval {

// The shortest text that reads back as the same double, as the phone prints numbers in its
// log lines: "48.8566", "24.0", "1e-05".
std::string doubleDescription(double value);

// A finite decimal number as people type it: "48.85", "+2.35", "-1e-3", ".5". Absent for
// anything else: hexadecimal, inf and nan, spaces, trailing text, or beyond a double's range.
std::optional<double> decimalNumber(std::string_view text);

}  // namespace lunoval
