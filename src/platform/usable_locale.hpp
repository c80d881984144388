#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lunoval {

// A locale that ICU formats dates in and gettext chooses catalogues by.
struct UsableLocale {
    std::string identifier;
    // One line for the user when the locale asked for could not be used as it was.
    std::optional<std::string> warning;
};

// The identifier in ICU's canonical form ("de-DE" and "de_DE.UTF-8" are "de_DE") when ICU has
// its language and can format dates in it; else its language alone if that can; else
// en_US_POSIX.
UsableLocale usableLocale(std::string_view identifier);

}  // namespace lunoval
