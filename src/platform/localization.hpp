#pragma once

#include <string>

namespace lunoval::l10n {

// Texts are looked up in the gettext catalogues of the text domain "lunoval"; the key is the
// English text, and shows itself where a language has no translation of it.

// The language of a locale such as "de_DE" for every lookup that follows. gettext keeps one
// language a process, so the device's is chosen where a request enters, before any lookup.
void useLanguage(const std::string& locale);

// The user-visible text of a key in the language in use.
std::string localized(const char* key);

// A format with one "%d", chosen by the plural rule of `count` and filled with it.
std::string localizedCount(const char* key, long count);

// Marks a key that is looked up later from a value, so that the catalogues carry it.
constexpr const char* translatable(const char* key) {
    return key;
}

}  // namespace lunoval::l10n
