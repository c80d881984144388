#pragma once

#include <cstdint>

namespace lunoval::ephemeris {

enum class PrincipalPhase { newMoon, firstQuarter, fullMoon, lastQuarter };

inline constexpr std::int64_t phasesPerLunation = 4;

struct PhaseInstant {
    PrincipalPhase phase = PrincipalPhase::newMoon;
    double julianEphemerisDay = 0;  // TT
};

// The principal phases numbered one after another: phase number 4k is the new moon of lunation
// k, 4k + 1 its first quarter, 4k + 2 its full moon and 4k + 3 its last quarter.
PhaseInstant principalPhase(std::int64_t phaseNumber);

}  // namespace lunoval::ephemeris
