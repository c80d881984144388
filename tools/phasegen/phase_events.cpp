#include "phasegen/phase_events.hpp"

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "ephemeris/delta_t.hpp"
#include "ephemeris/lunation.hpp"

namespace lunoval::phasegen {

namespace {

constexpr std::array<std::string_view, 4> phaseCodes{"NM", "FQ", "FM", "LQ"};

// A new moon at least a lunation before the year starts: k estimated from the year is only a
// fraction of a lunation off, and the phases follow one another in time.
std::int64_t phaseNumberBefore(int year) {
    const double lunations = std::floor((year - 2000) * ephemeris::lunationsPerYear) - 1;
    return static_cast<std::int64_t>(lunations) * ephemeris::phasesPerLunation;
}

std::string twoDigits(long value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::vector<PhaseEvent> phaseEventsOfYear(int year) {
    const date::year wanted{year};
    std::vector<PhaseEvent> events;
    for (std::int64_t phaseNumber = phaseNumberBefore(year);; ++phaseNumber) {
        const ephemeris::PhaseInstant instant = ephemeris::principalPhase(phaseNumber);
        const ephemeris::CalendarMinute time = ephemeris::nearestCalendarMinute(
            ephemeris::universalJulianDay(instant.julianEphemerisDay));
        if (time.date.year() > wanted) return events;
        if (time.date.year() == wanted) events.push_back({time, instant.phase});
    }
}

std::string eventLine(const PhaseEvent& event) {
    return std::to_string(static_cast<unsigned>(event.time.date.day())) + ' ' +
           twoDigits(event.time.hour.count()) + ':' + twoDigits(event.time.minute.count()) + ' ' +
           std::string(phaseCodes.at(static_cast<std::size_t>(event.phase)));
}

}  // namespace lunoval::phasegen
