#include "astro/phase_type.hpp"

#include <array>

#include "platform/localization.hpp"

namespace lunoval::Solar {

namespace {

struct Names {
    std::string_view raw;
    std::string_view caseName;
};

// In declaration order of PhaseType. The raw values are also the displayed names.
constexpr std::array<Names, 8> kNames{{
    // TRANSLATORS: Moon phase name
    {l10n::translatable("New Moon"), "newMoon"},
    // TRANSLATORS: Moon phase name
    {l10n::translatable("Waxing Crescent"), "waxingCrescent"},
    // TRANSLATORS: Moon phase name
    {l10n::translatable("First Quarter"), "firstQuarter"},
    // TRANSLATORS: Moon phase name
    {l10n::translatable("Waxing Gibbous"), "waxingGibbous"},
    // TRANSLATORS: Moon phase name
    {l10n::translatable("Full Moon"), "fullMoon"},
    // TRANSLATORS: Moon phase name
    {l10n::translatable("Waning Gibbous"), "waningGibbous"},
    // TRANSLATORS: Moon phase name
    {l10n::translatable("Last Quarter"), "lastQuarter"},
    // TRANSLATORS: Moon phase name
    {l10n::translatable("Waning Crescent"), "waningCrescent"},
}};

}  // namespace

std::string_view rawValue(PhaseType phase) {
    return kNames.at(static_cast<std::size_t>(phase)).raw;
}

std::string_view caseName(PhaseType phase) {
    return kNames.at(static_cast<std::size_t>(phase)).caseName;
}

std::optional<PhaseType> phaseType(std::string_view rawValue) {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (kNames.at(i).raw == rawValue) return static_cast<PhaseType>(i);
    }
    return std::nullopt;
}

}  // namespace lunoval::Solar
