#pragma once

#include <string_view>

namespace lunoval::log {

// Writes one diagnostic line (a newline is added).
void line(std::string_view text);

// Writes one line on standard error, whatever the diagnostics use, such as a warning about the
// environment the command runs in ("lunoval: " is put before it).
void warning(std::string_view text);

// Writes one line on standard error about a choice made for the user, such as the zone taken
// from a place ("lunoval: " is put before it); silenced with the diagnostics.
void note(std::string_view text);

// Commands that print machine-readable output move diagnostics to standard error.
void toStandardError(bool enabled);

enum class Verbosity { normal, quiet };

// Quiet drops diagnostic lines and notes; warnings and errors still show.
void setVerbosity(Verbosity verbosity);

}  // namespace lunoval::log
