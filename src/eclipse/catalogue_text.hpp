#pragma once

#include <string_view>
#include <vector>

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

}  // namespace lunoval
