#include "eclipse/eclipse_visibility.hpp"

#include "astro/moon_position.hpp"
#include "astro/sun_times.hpp"
#include "platform/calendar.hpp"

namespace lunoval {

namespace {

bool isWithin(Date instant, Date from, Date to) {
    return from <= instant && instant <= to;
}

bool moonIsUp(Date instant, const Calendar& calendar, Date dayStart, Solar::Observer observer) {
    const auto& zone = calendar.timeZone();
    const auto [rise, set] = Solar::moonRiseAndSet(dayStart, zone, observer);
    if (!rise || !set) return false;
    if (*rise <= *set) return isWithin(instant, *rise, *set);
    // Set in the morning, risen again in the evening: up at either end of the day.
    if (isWithin(instant, dayStart, *set)) return true;
    const Date nextDay = calendar.addingDays(1, dayStart).value_or(dayStart);
    return isWithin(instant, *rise, nextDay);
}

bool sunIsUp(Date instant, const TimeZone& zone, Solar::Observer observer) {
    const auto sunrise = Solar::sunrise(instant, zone, observer);
    const auto sunset = Solar::sunset(instant, zone, observer);
    return sunrise && sunset && isWithin(instant, *sunrise, *sunset);
}

}  // namespace

bool isVisibleFrom(const EclipseEvent& event, const TimeZone& zone, Solar::Observer observer) {
    if (!event.isLunarEvent) return sunIsUp(event.datetime, zone, observer);
    const Calendar calendar(zone);
    const auto dayStart = calendar.startOfDay(event.datetime);
    return dayStart && moonIsUp(event.datetime, calendar, *dayStart, observer);
}

}  // namespace lunoval
