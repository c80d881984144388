#pragma once

#include <unicode/utypes.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.hpp"
#include "platform/time_zone.hpp"

U_NAMESPACE_BEGIN
class SimpleDateFormat;
U_NAMESPACE_END

namespace lunoval {

// Locale-aware text for instants. Zone rules come from the system database: each instant is
// formatted in a fixed-offset zone equal to its offset there, never with ICU's own rules.
struct DateFormatter {
    std::string localeIdentifier;
    TimeZone timeZone;

    // The locale's short time style, such as "9:41 PM" or "21:41".
    [[nodiscard]] std::string shortTime(Date date) const;
    // The locale's medium date with its short time, such as "Apr 8, 2024, 6:17 PM".
    [[nodiscard]] std::string mediumDateShortTime(Date date) const;
    // A date pattern such as "MMM", "d" or "MMMM yyyy".
    [[nodiscard]] std::string pattern(Date date, std::string_view pattern) const;
};

// Strict parsing of UTC wall-clock texts in the en_US locale with one pattern such as
// "MM/dd/yyyy HH:mm", set up once for many texts.
class UTCDateParser {
  public:
    explicit UTCDateParser(std::string_view pattern);
    ~UTCDateParser();
    UTCDateParser(const UTCDateParser&) = delete;
    UTCDateParser& operator=(const UTCDateParser&) = delete;

    // Absent when the text does not match the pattern exactly (month 13 is rejected).
    [[nodiscard]] std::optional<Date> parse(std::string_view text) const;

  private:
    std::unique_ptr<icu::SimpleDateFormat> formatter_;
};

// One text read as UTCDateParser reads it.
std::optional<Date> parseUTC(std::string_view text, std::string_view pattern);

}  // namespace lunoval
