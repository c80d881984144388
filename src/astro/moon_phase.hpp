#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "astro/moon_illumination.hpp"
#include "astro/phase_type.hpp"
#include "phases/moon_phase_event.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval::Solar {

// The tabulated principal phases of one year and month, in table order.
using PhaseTable = std::function<std::vector<MoonPhaseEvent>(int year, int month)>;

// A principal phase is named on the local day (in `zone`) that holds its tabulated instant;
// every other day is a crescent or a gibbous.
SimpleMoonPhase moonPhase(Date date, const TimeZone& zone, const Tilt& tilt, Observer observer,
                          const PhaseTable& table);

PhaseType principalPhaseType(MoonPhaseEvent::PhaseType phase);

}  // namespace lunoval::Solar
