#pragma once

#include <optional>

#include "astro/moon_phase.hpp"
#include "eclipse/eclipse_event.hpp"
#include "phases/moon_phase_data_manager.hpp"
#include "platform/date.hpp"
#include "timeline/moon_widget_data.hpp"

namespace lunoval {

// Where the builder finds the tables it consults.
struct AstronomySources {
    Solar::PhaseTable phaseTable;
    std::function<std::optional<NextPhase>(Date, const TimeZone&)> nextPhase;
    // The eclipse on the local day of the date, with its visibility from the place.
    std::function<std::shared_ptr<const EclipseEvent>(Date, const TimeZone&, Solar::Observer)>
        eclipseInfo;

    // The process-wide phase tables and eclipse catalogue, the catalogue's years counted in
    // the device's zone.
    static AstronomySources shared(const TimeZone& deviceZone);
};

enum class SunTimes { include, omit };

// Runs the astronomy for `date` at the record's place, counting local days in the record's
// zone. An unknown zone leaves every field but `selectedTime` as it was; any other input is
// worked through as given (what a fix cannot hold is kept out where damaged files are read).
void fill(MoonWidgetData& record, Date date, SunTimes sunTimes, const Solar::Tilt& tilt,
          const AstronomySources& sources);

// "today", "tomorrow" or "in N days", localised.
std::string nextPhaseText(std::int64_t daysUntil);

}  // namespace lunoval
