#include "astro/coordinates.hpp"

#include <cmath>

namespace lunoval::Solar {

namespace {

constexpr double kEarthAxisRatio = 0.9966471893352525;
constexpr double kEarthRadiusKm = 6378.137;

}  // namespace

double daysSinceJ2000(Date date) {
    return date.timeIntervalSince1970() * 1000.0 / 8.64e7 + (-0.5) + 2440588.0 + (-2451545.0);
}

Date dateFromDays(double days) {
    return Date::fromTimeIntervalSince1970((days + 2451545.0 + (-2440588.0) + 0.5) * 86400.0);
}

double solarMeanAnomaly(double days) {
    return radians(357.5291 + 0.98560028 * days);
}

double eclipticLongitude(double meanAnomaly) {
    const double m = meanAnomaly;
    const double center =
        radians(1.9148 * std::sin(m) + 0.02 * std::sin(2 * m) + 0.0003 * std::sin(3 * m));
    return m + center + 1.796593062783907 + kPi;
}

EquatorialCoordinates sunCoordinates(double days) {
    const double l = eclipticLongitude(solarMeanAnomaly(days));
    return {
        .rightAscension = std::atan2(std::sin(l) * kCosObliquity, std::cos(l)),
        .declination = std::asin(std::sin(l) * kSinObliquity + 0),
    };
}

MoonCoordinates moonCoordinates(double days) {
    const double meanLongitude = radians(218.316 + 13.176396 * days);
    const double meanAnomaly = radians(134.963 + 13.064993 * days);
    const double meanNodeDistance = radians(93.272 + 13.22935 * days);

    const double l = meanLongitude + 0.10976375665792337 * std::sin(meanAnomaly);
    const double b = 0.08950048404226922 * std::sin(meanNodeDistance);
    return {
        .rightAscension =
            std::atan2(std::sin(l) * kCosObliquity - std::tan(b) * kSinObliquity, std::cos(l)),
        .declination =
            std::asin(std::sin(b) * kCosObliquity + std::cos(b) * kSinObliquity * std::sin(l)),
        .distance = 385001.0 - 20905.0 * std::cos(meanAnomaly),
    };
}

double siderealAngle(double days) {
    return radians(280.16 + 360.9856235 * days);
}

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): the series' own arguments, in its order
TopocentricMoon topocentricMoon(double days, double phi, double theta) {
    const double u = std::atan(kEarthAxisRatio * std::tan(phi));
    const double rhoSinPhi = kEarthAxisRatio * std::sin(u) + 0;
    const double rhoCosPhi = std::cos(u) + 0;

    const auto moon = moonCoordinates(days);
    const double sinParallax = std::sin(std::asin(kEarthRadiusKm / moon.distance));
    const double hourAngle = theta - moon.rightAscension;
    const double a = std::cos(moon.declination) * std::sin(hourAngle);
    const double b = std::cos(moon.declination) * std::cos(hourAngle) - rhoCosPhi * sinParallax;
    const double c = std::sin(moon.declination) - rhoSinPhi * sinParallax;

    const double topocentricHourAngle = std::atan2(a, b);
    double rightAscension = std::fmod(theta - topocentricHourAngle, kTwoPi);
    if (rightAscension < 0) rightAscension += kTwoPi;
    return {
        .rightAscension = rightAscension,
        .declination = std::atan2(c, std::sqrt(a * a + b * b)),
        .hourAngle = topocentricHourAngle,
    };
}

double refracted(double altitude) {
    const double h0 = altitude >= 0 ? altitude : 0;
    return altitude + 0.0002967 / std::tan(h0 + 0.00312536 / (h0 + 0.08901179));
}

double moonAltitudeRadians(Date date, double lw, double phi) {
    const double days = daysSinceJ2000(date);
    const auto moon = moonCoordinates(days);
    const double h = std::asin(std::sin(phi) * std::sin(moon.declination) +
                               std::cos(phi) * std::cos(moon.declination) *
                                   std::cos(siderealAngle(days) - lw - moon.rightAscension));
    return refracted(h);
}

}  // namespace lunoval::Solar
