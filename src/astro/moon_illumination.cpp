#include "astro/moon_illumination.hpp"

#include <cmath>

#include "astro/coordinates.hpp"

namespace lunoval::Solar {

namespace {

constexpr double kSunDistanceKm = 1.49598e8;
constexpr double kEarthAxisRatio = 0.9966471893352525;
constexpr double kEarthRadiusKm = 6378.137;
constexpr int kTransitPasses = 6;
constexpr double kTransitTolerance = 1e-12;

double wrapDegrees(double angle) {
    while (angle > 180) angle -= 360;
    while (angle < -180) angle += 360;
    return angle;
}

double wrapRadians(double angle) {
    while (angle > kPi) angle -= kTwoPi;
    while (angle < -kPi) angle += kTwoPi;
    return angle;
}

}  // namespace

Illumination moonIllumination(Date date) {
    const double days = daysSinceJ2000(date);
    const auto sun = sunCoordinates(days);
    const auto moon = moonCoordinates(days);
    const double raDifference = sun.rightAscension - moon.rightAscension;

    const double elongation =
        std::acos(std::sin(sun.declination) * std::sin(moon.declination) +
                  std::cos(sun.declination) * std::cos(moon.declination) * std::cos(raDifference));
    const double inclination = std::atan2(kSunDistanceKm * std::sin(elongation),
                                          moon.distance - kSunDistanceKm * std::cos(elongation));
    const double angle = std::atan2(
        std::cos(sun.declination) * std::sin(raDifference),
        std::sin(sun.declination) * std::cos(moon.declination) -
            std::cos(sun.declination) * std::sin(moon.declination) * std::cos(raDifference));
    return {
        .fraction = (std::cos(inclination) + 1.0) * 0.5,
        .brightLimbAngle = -angle,
        .phaseAngle = angle * (-180.0) / kPi,
    };
}

double moonTilt(Date date, Observer observer) {
    const double days = daysSinceJ2000(date);
    const double phi = radians(observer.latitude);
    const double theta = siderealAngle(days) + radians(observer.longitude);
    const auto sun = sunCoordinates(days);
    const auto moon = topocentricMoon(days, phi, theta);

    const double parallactic = std::atan2(
        std::sin(moon.hourAngle), std::tan(phi) * std::cos(moon.declination) -
                                      std::sin(moon.declination) * std::cos(moon.hourAngle));
    const double raDifference = sun.rightAscension - moon.rightAscension;
    const double brightLimb = std::atan2(
        std::cos(sun.declination) * std::sin(raDifference),
        std::sin(sun.declination) * std::cos(moon.declination) -
            std::cos(sun.declination) * std::sin(moon.declination) * std::cos(raDifference));
    const double x = degrees(brightLimb - parallactic) + (-90.0);
    return wrapDegrees(-x);
}

Date moonTransit(Date date, Observer observer) {
    double days = daysSinceJ2000(date);
    const double rhoCosPhi =
        std::cos(std::atan(kEarthAxisRatio * std::tan(radians(observer.latitude))));
    for (int pass = 0; pass < kTransitPasses; ++pass) {
        const double theta = siderealAngle(days) + radians(observer.longitude);
        const auto moon = moonCoordinates(days);
        const double sinParallax = std::sin(std::asin(kEarthRadiusKm / moon.distance));
        const double hourAngle = wrapRadians(
            std::atan2(std::cos(moon.declination) * std::sin(theta - moon.rightAscension),
                       std::cos(moon.declination) * std::cos(theta - moon.rightAscension) -
                           rhoCosPhi * sinParallax));
        const double step = hourAngle / kTwoPi;
        days = days - step;
        if (std::fabs(step) < kTransitTolerance) break;
    }
    return dateFromDays(days);
}

double tiltAngle(const Tilt& tilt, Observer observer) {
    switch (tilt.kind) {
        case Tilt::Kind::none:
            return 0.0;
        case Tilt::Kind::atInstant:
            return moonTilt(tilt.instant, observer);
        case Tilt::Kind::atNearestTransit:
            return moonTilt(moonTransit(tilt.instant, observer), observer);
    }
    return 0.0;
}

}  // namespace lunoval::Solar
