#pragma once

#include <string_view>

namespace lunoval::log {

// Writes one diagnostic line (a newline is added).
void line(std::string_view text);

// Writes one line on standard error, whatever the diagnostics use, such as a warning about the
// environment the command runs in ("lunoval: " is put before it).
void warning(std::string_view text);

// Commands that print machine-readable output move diagnostics to standard error.
void toStandardError(bool enabled);

}  // namespace lunoval::log
