#include "platform/localization.hpp"

#include <libintl.h>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string_view>

#include "platform/installation.hpp"

// Bumped to make gettext drop the translations it has looked up (documented by GNU gettext).
extern "C" int _nl_msg_cat_cntr;  // NOLINT(bugprone-reserved-identifier)

namespace lunoval::l10n {

namespace {

constexpr const char* kTextDomain = "lunoval";

// "pt_BR" looks in pt_BR, then pt.
std::string languageList(const std::string& locale) {
    const auto language = locale.substr(0, locale.find('_'));
    return language == locale ? locale : locale + ":" + language;
}

// gettext reads catalogues only outside the "C" locale; C.UTF-8 is always there, and LANGUAGE
// then chooses the catalogue.
void bindOnce() {
    static const bool bound = [] {
        bindtextdomain(kTextDomain, installation::localeDirectory().c_str());
        bind_textdomain_codeset(kTextDomain, "UTF-8");
        if (std::string_view(std::setlocale(LC_MESSAGES, nullptr)) == "C") {
            std::setlocale(LC_MESSAGES, "C.UTF-8");
        }
        return true;
    }();
    (void)bound;
}

}  // namespace

void useLanguage(const std::string& locale) {
    static std::mutex mutex;
    static std::string active;
    const std::scoped_lock lock(mutex);
    bindOnce();
    if (locale == active) return;
    active = locale;
    ::setenv("LANGUAGE", languageList(locale).c_str(), 1);
    ++_nl_msg_cat_cntr;
}

std::string localized(const char* key) {
    bindOnce();
    return dgettext(kTextDomain, key);
}

std::string localizedCount(const char* key, long count) {
    bindOnce();
    std::string text =
        dngettext(kTextDomain, key, key, static_cast<unsigned long>(std::labs(count)));
    constexpr std::string_view placeholder = "%d";
    if (const auto at = text.find(placeholder); at != std::string::npos) {
        text.replace(at, placeholder.size(), std::to_string(count));
    }
    return text;
}

}  // namespace lunoval::l10n
