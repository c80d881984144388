#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lunoval {

// One tabulated principal phase: its UTC wall-clock time within the table's year and month.
struct MoonPhaseEvent {
    enum class PhaseType { newMoon, firstQuarter, fullMoon, lastQuarter };

    std::int64_t day = 0;
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    PhaseType phase = PhaseType::newMoon;

    // The two-letter file code: "NM", "FQ", "FM" or "LQ".
    static std::string_view rawValue(PhaseType phase);
    static std::optional<PhaseType> phaseType(std::string_view rawValue);

    friend bool operator==(const MoonPhaseEvent&, const MoonPhaseEvent&) = default;
};

}  // namespace lunoval
