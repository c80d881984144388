#include "phases/moon_phase_event.hpp"

#include <array>
#include <utility>

namespace lunoval {

namespace {
using enum MoonPhaseEvent::PhaseType;
constexpr std::array<std::pair<MoonPhaseEvent::PhaseType, std::string_view>, 4> kCodes{{
    {newMoon, "NM"},
    {firstQuarter, "FQ"},
    {fullMoon, "FM"},
    {lastQuarter, "LQ"},
}};
}  // namespace

std::string_view MoonPhaseEvent::rawValue(PhaseType phase) {
    return kCodes.at(static_cast<std::size_t>(phase)).second;
}

std::optional<MoonPhaseEvent::PhaseType> MoonPhaseEvent::phaseType(std::string_view rawValue) {
    for (const auto& [phase, code] : kCodes) {
        if (code == rawValue) return phase;
    }
    return std::nullopt;
}

}  // namespace lunoval
