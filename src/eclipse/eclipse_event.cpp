#include "eclipse/eclipse_event.hpp"

#include "platform/date_formatter.hpp"
#include "platform/localization.hpp"

namespace lunoval {

std::optional<std::string> eclipseTitle(std::string_view key) {
    // TRANSLATORS: Total Lunar Eclipse
    if (key == "TLE") return l10n::localized("Total Lunar Eclipse");
    // TRANSLATORS: Partial Lunar Eclipse
    if (key == "PLE") return l10n::localized("Partial Lunar Eclipse");
    // TRANSLATORS: Penumbra Lunar Eclipse
    if (key == "NLE") return l10n::localized("Penumbra Lunar Eclipse");
    // TRANSLATORS: Total Solar Eclipse
    if (key == "TSE") return l10n::localized("Total Solar Eclipse");
    // TRANSLATORS: Partial Solar Eclipse
    if (key == "PSE") return l10n::localized("Partial Solar Eclipse");
    // TRANSLATORS: Annular Solar Eclipse
    if (key == "ASE") return l10n::localized("Annular Solar Eclipse");
    // TRANSLATORS: Hybrid Solar Eclipse
    if (key == "HSE") return l10n::localized("Hybrid Solar Eclipse");
    return std::nullopt;
}

std::string description(const EclipseEvent& event, const std::string& locale) {
    const DateFormatter formatter{locale, TimeZone::utc()};
    return event.title + " on " + formatter.mediumDateShortTime(event.datetime) + " (UTC)";
}

}  // namespace lunoval

std::size_t std::hash<lunoval::EclipseEvent>::operator()(
    const lunoval::EclipseEvent& event) const noexcept {
    const std::size_t keyHash = std::hash<std::string>{}(event.key);
    const std::size_t dateHash = std::hash<double>{}(event.datetime.timeIntervalSince1970());
    return keyHash ^ (dateHash + 0x9e3779b97f4a7c15ULL + (keyHash << 6U) + (keyHash >> 2U));
}
