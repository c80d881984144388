#pragma once

#include "platform/date.hpp"

// The astronomy of the widgets: short closed-form series in double precision. Every formula
// is evaluated in the written order, because the published figures depend on it to the last bit.
namespace lunoval::Solar {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kSinObliquity = 0.39778370349342274;
inline constexpr double kCosObliquity = 0.9174792233260962;

struct EquatorialCoordinates {
    double rightAscension;  // radians
    double declination;     // radians
};

struct MoonCoordinates {
    double rightAscension;  // radians
    double declination;     // radians
    double distance;        // kilometres
};

struct TopocentricMoon {
    double rightAscension;  // radians
    double declination;     // radians
    double hourAngle;       // radians
};

constexpr double radians(double degrees) {
    return degrees * kPi / 180.0;
}
constexpr double degrees(double radians) {
    return radians * 180.0 / kPi;
}

// Days since 2000-01-01 12:00 UTC.
double daysSinceJ2000(Date date);
Date dateFromDays(double days);

// The sun's mean anomaly and its ecliptic longitude (radians); the ecliptic latitude is zero.
double solarMeanAnomaly(double days);
double eclipticLongitude(double meanAnomaly);
EquatorialCoordinates sunCoordinates(double days);
MoonCoordinates moonCoordinates(double days);
// Greenwich sidereal angle in radians, not reduced to one turn.
double siderealAngle(double days);
// The moon as seen from a sea-level observer at geocentric latitude `phi` under local sidereal
// angle `theta`.
TopocentricMoon topocentricMoon(double days, double phi, double theta);

// Altitude raised by atmospheric refraction; below the horizon the horizon's refraction applies.
double refracted(double altitude);
// The moon's refracted altitude; `lw` is the west-positive longitude in radians.
double moonAltitudeRadians(Date date, double lw, double phi);

}  // namespace lunoval::Solar
