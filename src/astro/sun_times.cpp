#include "astro/sun_times.hpp"

#include <cmath>

#include "astro/coordinates.hpp"
#include "platform/calendar.hpp"

namespace lunoval::Solar {

namespace {

constexpr double kTransitOffset = 0.0009;
constexpr double kSinSunriseAltitude = -0.014538080502496949;

struct SolarDay {
    double noon;  // Julian day of the transit
    double set;   // Julian day of the sunset; not a number when the sun never crosses
};

std::optional<SolarDay> solarDay(Date date, const TimeZone& zone, Observer observer) {
    const Calendar calendar(zone);
    const auto start = calendar.startOfDay(date);
    if (!start) return std::nullopt;
    const auto noon = calendar.dateBySettingTime(12, 0, 0, *start);
    if (!noon) return std::nullopt;

    const double lw = -observer.longitude * kPi / 180;
    const double phi = observer.latitude * kPi / 180;
    const double days = daysSinceJ2000(*noon);
    const double cycle = std::round(days - kTransitOffset - lw / (2 * kPi));
    const double approximateTransit = (0 + lw) / (2 * kPi) + kTransitOffset + cycle;

    const double m = solarMeanAnomaly(approximateTransit);
    const double l = eclipticLongitude(m);
    const double declination = std::asin(std::sin(l) * kSinObliquity + 0);

    const double transit =
        approximateTransit + 2451545.0 + 0.0053 * std::sin(m) - 0.0069 * std::sin(2 * l);
    const double hourAngle =
        std::acos((kSinSunriseAltitude - std::sin(phi) * std::sin(declination)) /
                  (std::cos(phi) * std::cos(declination)));
    const double set = (hourAngle + lw) / (2 * kPi) + kTransitOffset + cycle + 2451545.0 +
                       0.0053 * std::sin(m) - 0.0069 * std::sin(2 * l);
    return SolarDay{.noon = transit, .set = set};
}

std::optional<Date> fromJulianDay(double julianDay) {
    if (!std::isfinite(julianDay)) return std::nullopt;
    return Date::fromTimeIntervalSince1970((julianDay + 0.5 - 2440588.0) * 86400000.0 / 1000.0);
}

}  // namespace

std::optional<Date> sunrise(Date date, const TimeZone& zone, Observer observer) {
    const auto day = solarDay(date, zone, observer);
    if (!day) return std::nullopt;
    return fromJulianDay(day->noon + day->noon - day->set);
}

std::optional<Date> sunset(Date date, const TimeZone& zone, Observer observer) {
    const auto day = solarDay(date, zone, observer);
    if (!day) return std::nullopt;
    return fromJulianDay(day->set);
}

}  // namespace lunoval::Solar
