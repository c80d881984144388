#include "astro/moon_position.hpp"

#include <cmath>

#include "astro/coordinates.hpp"
#include "platform/calendar.hpp"

namespace lunoval::Solar {

namespace {

// The moon's centre is on the horizon at +0.133 degrees of geocentric altitude.
constexpr double kRiseSetAltitudeOffset = -0.0023212879051524586;
constexpr double kSecondsPerHour = 3600.0;

// Samples the altitude hourly and fits a parabola through each three samples; a later crossing
// overwrites an earlier one, and the search ends once both are known.
MoonRiseSet searchRiseSet(Date start, double lw, double phi) {
    const auto altitudeAt = [&](int hour) {
        return moonAltitudeRadians(start.addingTimeInterval(hour * kSecondsPerHour), lw, phi) +
               kRiseSetAltitudeOffset;
    };
    const auto at = [&](int hour, double x) {
        return start.addingTimeInterval((hour + x) * kSecondsPerHour);
    };

    MoonRiseSet found;
    double h0 = moonAltitudeRadians(start, lw, phi) + kRiseSetAltitudeOffset;
    for (int i = 1; i <= 24; i += 2) {
        const double h1 = altitudeAt(i);
        const double h2 = altitudeAt(i + 1);
        const double a = (h0 + h2) / 2 - h1;
        const double b = (h2 - h0) / 2;
        const double discriminant = b * b + h1 * a * (-4.0);
        if (discriminant >= 0) {
            const double xe = -b / (2 * a);
            const double dx = std::sqrt(discriminant) / (std::fabs(a) + std::fabs(a));
            const double x1 = xe - dx;
            const double x2 = xe + dx;
            const bool x1Inside = std::fabs(x1) <= 1;
            const bool x2Inside = std::fabs(x2) <= 1;
            if (x1Inside && x2Inside) {
                const double ye = h1 + xe * (b + a * xe);
                found.rise = at(i, ye >= 0 ? x1 : x2);
                found.set = at(i, ye >= 0 ? x2 : x1);
            } else if (x1Inside || x2Inside) {
                const Date crossing = at(i, x1Inside ? x1 : x2);
                (h0 >= 0 ? found.set : found.rise) = crossing;
            }
        }
        h0 = h2;
        if (found.rise && found.set) break;
    }
    return found;
}

}  // namespace

HorizontalPosition moonPosition(Date date, Observer observer) {
    const double lambda = radians(observer.longitude);
    const double phi = radians(observer.latitude);
    const double days = daysSinceJ2000(date);
    const auto moon = moonCoordinates(days);
    const double theta = siderealAngle(days) + lambda;
    const double hourAngle = theta - moon.rightAscension;

    const double h =
        refracted(std::asin(std::sin(phi) * std::sin(moon.declination) +
                            std::cos(phi) * std::cos(moon.declination) * std::cos(hourAngle)));
    const double azimuth =
        std::atan2(std::sin(hourAngle), std::cos(hourAngle) * std::sin(phi) -
                                            std::tan(moon.declination) * std::cos(phi));
    return {.altitude = degrees(h), .azimuth = degrees(azimuth) + 180};
}

MoonRiseSet moonRiseAndSet(Date date, const TimeZone& zone, Observer observer) {
    const auto start = Calendar(zone).startOfDay(date);
    if (!start) return {};
    return searchRiseSet(*start, radians(-observer.longitude), radians(observer.latitude));
}

std::optional<Date> moonRiseSet(Date date, const TimeZone& zone, Crossing crossing,
                                Observer observer) {
    const auto found = moonRiseAndSet(date, zone, observer);
    return crossing == Crossing::rise ? found.rise : found.set;
}

}  // namespace lunoval::Solar
