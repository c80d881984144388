#pragma once

#include <string_view>

namespace lunoval::log {

// Writes one diagnostic line (a newline is added).
void line(std::string_view text);

// A line for the user that must not mix with any output: on standard error, after the
// program's name.
void warning(std::string_view text);

// Commands that print machine-readable output move diagnostics to standard error.
void toStandardError(bool enabled);

}  // namespace lunoval::log
