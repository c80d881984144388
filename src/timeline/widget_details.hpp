#pragma once

#include <optional>
#include <string>
#include <vector>

#include "astro/phase_type.hpp"
#include "phases/moon_phase_event.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// What the widgets show of an entry besides its record, worked out with the entry so that the
// views only lay it out.

// How the entry's instants are written: the device's locale, in the record's zone (the
// device's when the record names none it knows).
struct LocalFormat {
    std::string locale = "en_US";
    TimeZone zone = TimeZone::utc();
};

// The extremes of the moon's altitude over the chart day, in degrees, with the sampled
// instants that reached them when they come from samples.
struct AltitudeRange {
    double maximum = 0;
    double minimum = 0;
    std::optional<Date> maximumAt;
    std::optional<Date> minimumAt;
};

struct AltitudeSample {
    Date instant;
    double altitude = 0;  // degrees, refraction included
};

// The moon's altitude over the local day the elevation chart shows.
struct ElevationDay {
    Date dayStart;
    // What the altitude axis is scaled to.
    AltitudeRange range;
    // Ten-minute samples from noon before the day to noon after it, in time order.
    std::vector<AltitudeSample> curve;
    std::optional<AltitudeSample> rise;
    std::optional<AltitudeSample> set;
    // The moon at the entry's moment, which may fall off the chart day.
    AltitudeSample present;
    std::optional<Date> noon;
};

struct MonthDay {
    int day = 1;
    // The table's own day of month marks the day of a principal phase.
    std::optional<MoonPhaseEvent::PhaseType> principalPhase;
    // Otherwise the moon at local noon, untilted: the grid is too small for the tilt. Absent
    // where noon cannot be told.
    std::optional<Solar::SimpleMoonPhase> phase;
};

// The month of the record's moment with each day's moon, for a grid whose weeks start on Sunday.
struct PhaseMonth {
    int year = 0;
    int month = 0;
    int today = 0;
    // Empty cells before the 1st.
    int leadingDays = 0;
    std::vector<MonthDay> days;
};

struct WidgetDetails {
    LocalFormat format;
    std::optional<PhaseMonth> month;
    std::optional<ElevationDay> elevation;
};

}  // namespace lunoval
