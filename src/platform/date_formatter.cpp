#include "platform/date_formatter.hpp"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>
#include <memory>

namespace lunoval {

namespace {

constexpr double kMillisecondsPerSecond = 1000.0;

// ICU's answer is a UBool, a signed char.
bool failed(UErrorCode status) {
    return U_FAILURE(status) != 0;
}

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

std::string format(icu::DateFormat& formatter, Date date, const TimeZone& zone) {
    const auto offset = zone.offsetFromUTC(date);
    if (!offset) return {};
    const auto offsetMilliseconds = static_cast<int32_t>(offset->count() * 1000);
    formatter.adoptTimeZone(
        new icu::SimpleTimeZone(offsetMilliseconds, unicode(zone.identifier())));
    icu::UnicodeString text;
    formatter.format(date.timeIntervalSince1970() * kMillisecondsPerSecond, text);
    return utf8(text);
}

}  // namespace

std::string DateFormatter::shortTime(Date date) const {
    const std::unique_ptr<icu::DateFormat> formatter(icu::DateFormat::createTimeInstance(
        icu::DateFormat::kShort, icu::Locale(localeIdentifier.c_str())));
    if (!formatter) return {};
    return format(*formatter, date, timeZone);
}

std::string DateFormatter::mediumDateShortTime(Date date) const {
    const std::unique_ptr<icu::DateFormat> formatter(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMedium, icu::DateFormat::kShort, icu::Locale(localeIdentifier.c_str())));
    if (!formatter) return {};
    return format(*formatter, date, timeZone);
}

std::string DateFormatter::pattern(Date date, std::string_view pattern) const {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(unicode(pattern), icu::Locale(localeIdentifier.c_str()),
                                    status);
    if (failed(status)) return {};
    return format(formatter, date, timeZone);
}

UTCDateParser::UTCDateParser(std::string_view pattern) {
    UErrorCode status = U_ZERO_ERROR;
    auto formatter =
        std::make_unique<icu::SimpleDateFormat>(unicode(pattern), icu::Locale("en", "US"), status);
    if (failed(status)) return;
    formatter->setLenient(static_cast<UBool>(false));
    formatter->adoptTimeZone(icu::TimeZone::getGMT()->clone());
    formatter_ = std::move(formatter);
}

UTCDateParser::~UTCDateParser() = default;

std::optional<Date> UTCDateParser::parse(std::string_view text) const {
    if (!formatter_) return std::nullopt;
    const icu::UnicodeString input = unicode(text);
    icu::ParsePosition position(0);
    const UDate parsed = formatter_->parse(input, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != input.length()) {
        return std::nullopt;
    }
    return Date::fromTimeIntervalSince1970(parsed / kMillisecondsPerSecond);
}

std::optional<Date> parseUTC(std::string_view text, std::string_view pattern) {
    return UTCDateParser(pattern).parse(text);
}

}  // namespace lunoval
