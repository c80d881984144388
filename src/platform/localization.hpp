#pragma once

#include <string>

namespace lunoval::l10n {

// The user-visible text of a key in the device language; the key itself when untranslated.
std::string localized(const char* key);

// A format with one "%d", chosen by the plural rule of `count` and filled with it.
std::string localizedCount(const char* key, long count);

}  // namespace lunoval::l10n
