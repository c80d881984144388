#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// Locale-aware text for instants. Zone rules come from the system database: each instant is
// formatted in a fixed-offset zone equal to its offset there, never with ICU's own rules.
struct DateFormatter {
    std::string localeIdentifier;
    TimeZone timeZone;

    // The locale's short time style, such as "9:41 PM" or "21:41".
    [[nodiscard]] std::string shortTime(Date date) const;
    // A date pattern such as "MMM", "d" or "MMMM yyyy".
    [[nodiscard]] std::string pattern(Date date, std::string_view pattern) const;
};

// Strict parsing of a UTC wall-clock text in the en_US locale ("MM/dd/yyyy HH:mm");
// absent when the text does not match the pattern exactly (month 13 is rejected).
std::optional<Date> parseUTC(std::string_view text, std::string_view pattern);

}  // namespace lunoval
