#include "platform/text_case.hpp"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace lunoval {

std::string uppercased(std::string_view text, const std::string& localeIdentifier) {
    auto unicode = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    unicode.toUpper(icu::Locale(localeIdentifier.c_str()));
    std::string result;
    unicode.toUTF8String(result);
    return result;
}

}  // namespace lunoval
