#include "timeline/widget_data_builder.hpp"

#include <cmath>

#include "astro/moon_position.hpp"
#include "astro/sun_times.hpp"
#include "eclipse/eclipse_parser.hpp"
#include "phases/moon_phase_data_manager.hpp"
#include "platform/calendar.hpp"
#include "platform/localization.hpp"

namespace lunoval {

AstronomySources AstronomySources::shared(const TimeZone& deviceZone) {
    return {
        .phaseTable = [](int year,
                         int month) { return MoonPhaseDataManager::shared().events(year, month); },
        .nextPhase =
            [](Date date, const TimeZone& zone) {
                return MoonPhaseDataManager::shared().nextPhase(date, zone);
            },
        .eclipseInfo =
            [deviceZone](Date date, const TimeZone& zone, Solar::Observer place) {
                return EclipseParser::shared().eclipseInfo(date, zone, place, deviceZone);
            },
    };
}

std::string nextPhaseText(std::int64_t daysUntil) {
    if (daysUntil == 1) {
        // TRANSLATORS: Tomorrow
        return l10n::localized("tomorrow");
    }
    if (daysUntil == 0) {
        // TRANSLATORS: Today
        return l10n::localized("today");
    }
    // TRANSLATORS: In X days
    return l10n::localizedCount("in %d days", static_cast<long>(daysUntil));
}

namespace {

void fillNextPhase(MoonWidgetData& record, Date date, const TimeZone& zone, const Solar::Tilt& tilt,
                   const AstronomySources& sources) {
    const auto next = sources.nextPhase(date, zone);
    if (!next) return;
    if (const auto local = Calendar(zone).components(date)) {
        const auto& event = next->event;
        const auto instant = MoonPhaseDataManager::eventDate(local->year, local->month, event.day,
                                                             event.hour, event.minute);
        if (instant) {
            record.nextMoonPhase = Solar::moonPhase(
                *instant, zone, tilt, {record.latitude, record.longitude}, sources.phaseTable);
        }
    }
    record.nextPhaseTime = nextPhaseText(next->daysUntil);
}

}  // namespace

void fill(MoonWidgetData& record, Date date, SunTimes sunTimes, const Solar::Tilt& tilt,
          const AstronomySources& sources) {
    record.selectedTime = date;
    const auto zone = TimeZone::named(record.timezone);
    if (!zone) return;
    const Solar::Observer place{record.latitude, record.longitude};

    const auto moonTimes = Solar::moonRiseAndSet(date, *zone, place);
    record.moonrise = moonTimes.rise;
    record.moonset = moonTimes.set;
    const auto position = Solar::moonPosition(date, place);
    record.moonAzimuth = position.azimuth;
    record.moonAltitude = position.altitude;
    if (sunTimes == SunTimes::include) {
        record.sunrise = Solar::sunrise(date, *zone, place);
        record.sunset = Solar::sunset(date, *zone, place);
    }
    record.currentMoonPhase = Solar::moonPhase(date, *zone, tilt, place, sources.phaseTable);
    fillNextPhase(record, date, *zone, tilt, sources);
    record.eclipseInfo = sources.eclipseInfo(date, *zone, place);
}

}  // namespace lunoval
