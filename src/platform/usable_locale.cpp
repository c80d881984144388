#include "platform/usable_locale.hpp"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/uloc.h>
#include <memory>
#include <string_view>

namespace lunoval {

namespace {

constexpr const char* kLastResort = "en_US_POSIX";

// The identifiers alone: ICU's list of locale objects would keep a few hundred kilobytes for
// the process's life.
bool hasLanguage(const icu::Locale& locale) {
    const std::string_view language = locale.getLanguage();
    const int32_t count = uloc_countAvailable();
    for (int32_t index = 0; index < count; ++index) {
        const std::string_view known = uloc_getAvailable(index);
        if (known.substr(0, known.find('_')) == language) return true;
    }
    return false;
}

// ICU falls back to the process's default locale for a language it lacks, marks an identifier
// it cannot hold (a language of 12 letters) as bogus, where its date formatters crash, and
// makes no formatter for some it can hold (an unknown numbering system, a long variant).
bool isUsable(const icu::Locale& locale) {
    if (locale.isBogus() != 0 || *locale.getLanguage() == '\0' || !hasLanguage(locale))
        return false;
    const std::unique_ptr<icu::DateFormat> formatter(
        icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale));
    return formatter != nullptr;
}

}  // namespace

UsableLocale usableLocale(std::string_view identifier) {
    const std::string asked(identifier);
    if (const auto locale = icu::Locale::createCanonical(asked.c_str()); isUsable(locale)) {
        return {locale.getName(), std::nullopt};
    }
    const auto language =
        icu::Locale::createCanonical(asked.substr(0, asked.find_first_of("_-.@")).c_str());
    const std::string usable = isUsable(language) ? language.getName() : kLastResort;
    return {usable, "the locale '" + asked + "' cannot be used; using " + usable};
}

}  // namespace lunoval
