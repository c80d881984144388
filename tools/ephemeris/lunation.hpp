#pragma once

namespace lunoval::ephemeris {

// The arguments of the lunation series of Meeus, Astronomical Algorithms (2nd ed.), for
// lunation number k: k = 0 is the new moon of 2000 January 6, and k + 0.25, + 0.5 and + 0.75
// are the first quarter, full moon and last quarter that follow it. Angles are in degrees,
// reduced to [0, 360).
struct LunationArguments {
    double k = 0;
    double centuries = 0;             // T, Julian centuries from J2000.0
    double meanPhaseJde = 0;          // JDE (TT) of the mean phase
    double eccentricityFactor = 0;    // E, scales the terms in the Sun's anomaly
    double sunAnomaly = 0;            // M
    double moonAnomaly = 0;           // M′
    double moonLatitudeArgument = 0;  // F
    double moonNodeLongitude = 0;     // Ω, of the ascending node
};

LunationArguments lunationArguments(double k);

// Lunations per year, to estimate k from a date.
inline constexpr double lunationsPerYear = 12.3685;

}  // namespace lunoval::ephemeris
