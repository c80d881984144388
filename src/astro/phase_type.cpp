#include "astro/phase_type.hpp"

#include <array>

namespace lunoval::Solar {

namespace {

struct Names {
    std::string_view raw;
    std::string_view caseName;
};

// In declaration order of PhaseType.
constexpr std::array<Names, 8> kNames{{
    {"New Moon", "newMoon"},
    {"Waxing Crescent", "waxingCrescent"},
    {"First Quarter", "firstQuarter"},
    {"Waxing Gibbous", "waxingGibbous"},
    {"Full Moon", "fullMoon"},
    {"Waning Gibbous", "waningGibbous"},
    {"Last Quarter", "lastQuarter"},
    {"Waning Crescent", "waningCrescent"},
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
