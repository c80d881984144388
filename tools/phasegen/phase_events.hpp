#pragma once

#include <string>
#include <vector>

#include "ephemeris/julian_day.hpp"
#include "ephemeris/principal_phases.hpp"

namespace lunoval::phasegen {

struct PhaseEvent {
    ephemeris::CalendarMinute time;  // UTC
    ephemeris::PrincipalPhase phase = ephemeris::PrincipalPhase::newMoon;
};

// The principal phases whose instant, rounded to the minute in UTC, falls in the year, in
// chronological order.
std::vector<PhaseEvent> phaseEventsOfYear(int year);

// The table's line for an event: "<day> <HH>:<MM> <CODE>", for example "6 18:15 FM".
std::string eventLine(const PhaseEvent& event);

}  // namespace lunoval::phasegen
