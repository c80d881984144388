#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/date.hpp"

namespace lunoval {

// Whether the bytes are well-formed UTF-8.
bool isUtf8(std::string_view text);

// The pieces between newline characters (LF, VT, FF, CR, NEL, LS, PS). Each one separates, so
// "\r\n" leaves an empty piece between its two characters.
std::vector<std::string_view> splitLines(std::string_view text);

// Without white space (space separators and tab) at either end; newlines are kept.
std::string_view trimWhitespace(std::string_view text);

// Without white space or newline characters at either end.
std::string_view trimWhitespaceAndNewlines(std::string_view text);

// A catalogue date written out in full as "MM/dd/yyyy HH:mm" (UTC), as every shipped line is:
// the instant the catalogue's date formatter gives, read without it. Absent for any other
// text, which is left to the formatter, and for years before 1600 (its calendar is Julian
// before 1582).
std::optional<Date> fullyWrittenDate(std::string_view text);

}  // namespace lunoval
