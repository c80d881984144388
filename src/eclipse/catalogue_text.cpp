#include "eclipse/catalogue_text.hpp"

#include <date/date.h>
#include <charconv>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace lunoval {

namespace {

bool isNewline(UChar32 c) {
    return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool isWhitespace(UChar32 c) {
    return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR;
}

bool isWhitespaceOrNewline(UChar32 c) {
    return isWhitespace(c) || isNewline(c);
}

int32_t length(std::string_view text) {
    return static_cast<int32_t>(text.size());
}

template <typename Predicate>
std::string_view trim(std::string_view text, Predicate strip) {
    const char* bytes = text.data();
    int32_t begin = 0;
    int32_t end = length(text);
    while (begin < end) {
        int32_t next = begin;
        UChar32 c = 0;
        U8_NEXT(bytes, next, end, c);
        if (!strip(c)) break;
        begin = next;
    }
    while (end > begin) {
        int32_t previous = end;
        UChar32 c = 0;
        U8_PREV(bytes, begin, previous, c);
        if (!strip(c)) break;
        end = previous;
    }
    return text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

}  // namespace

bool isUtf8(std::string_view text) {
    const char* bytes = text.data();
    int32_t at = 0;
    while (at < length(text)) {
        UChar32 c = 0;
        U8_NEXT(bytes, at, length(text), c);
        if (c < 0) return false;
    }
    return true;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    const char* bytes = text.data();
    std::vector<std::string_view> lines;
    int32_t lineStart = 0;
    int32_t at = 0;
    while (at < length(text)) {
        const int32_t characterStart = at;
        UChar32 c = 0;
        U8_NEXT(bytes, at, length(text), c);
        if (!isNewline(c)) continue;
        lines.push_back(text.substr(static_cast<std::size_t>(lineStart),
                                    static_cast<std::size_t>(characterStart - lineStart)));
        lineStart = at;
    }
    lines.push_back(text.substr(static_cast<std::size_t>(lineStart)));
    return lines;
}

std::string_view trimWhitespace(std::string_view text) {
    return trim(text, isWhitespace);
}

std::string_view trimWhitespaceAndNewlines(std::string_view text) {
    return trim(text, isWhitespaceOrNewline);
}

namespace {

// The unsigned decimal number filling `text` exactly.
std::optional<unsigned> digits(std::string_view text) {
    unsigned value = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

}  // namespace

std::optional<Date> fullyWrittenDate(std::string_view text) {
    if (text.size() != 16 || text[2] != '/' || text[5] != '/' || text[10] != ' ' ||
        text[13] != ':') {
        return std::nullopt;
    }
    const auto month = digits(text.substr(0, 2));
    const auto day = digits(text.substr(3, 2));
    const auto year = digits(text.substr(6, 4));
    const auto hour = digits(text.substr(11, 2));
    const auto minute = digits(text.substr(14, 2));
    if (!month || !day || !year || !hour || !minute || *year < 1600 || *hour > 23 || *minute > 59) {
        return std::nullopt;
    }
    const date::year_month_day calendarDay{date::year(static_cast<int>(*year)), date::month(*month),
                                           date::day(*day)};
    if (!calendarDay.ok()) return std::nullopt;
    const auto instant =
        date::sys_days(calendarDay) + std::chrono::hours(*hour) + std::chrono::minutes(*minute);
    return Date::fromTimeIntervalSince1970(
        std::chrono::duration<double>(instant.time_since_epoch()).count());
}

}  // namespace lunoval
