#include "platform/localization.hpp"

#include <libintl.h>
#include <string_view>

namespace lunoval::l10n {

namespace {
constexpr const char* kTextDomain = "lunoval";
}  // namespace

std::string localized(const char* key) {
    return dgettext(kTextDomain, key);
}

std::string localizedCount(const char* key, long count) {
    std::string text = dngettext(kTextDomain, key, key, static_cast<unsigned long>(count));
    constexpr std::string_view placeholder = "%d";
    if (const auto at = text.find(placeholder); at != std::string::npos) {
        text.replace(at, placeholder.size(), std::to_string(count));
    }
    return text;
}

}  // namespace lunoval::l10n
