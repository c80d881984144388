#include "ephemeris/lunation.hpp"

#include <cmath>

namespace lunoval::ephemeris {

namespace {

constexpr double lunationsPerCentury = 1236.85;

double reducedDegrees(double degrees) {
    const double reduced = std::fmod(degrees, 360.0);
    return reduced < 0 ? reduced + 360.0 : reduced;
}

}  // namespace

LunationArguments lunationArguments(double k) {
    const double t = k / lunationsPerCentury;
    const double t2 = t * t;
    const double t3 = t2 * t;
    const double t4 = t3 * t;
    return {
        .k = k,
        .centuries = t,
        .meanPhaseJde = 2451550.09766 + 29.530588861 * k + 0.00015437 * t2 - 0.000000150 * t3 +
                        0.00000000073 * t4,
        .eccentricityFactor = 1 - 0.002516 * t - 0.0000074 * t2,
        .sunAnomaly = reducedDegrees(2.5534 + 29.10535670 * k - 0.0000014 * t2 - 0.00000011 * t3),
        .moonAnomaly = reducedDegrees(201.5643 + 385.81693528 * k + 0.0107582 * t2 +
                                      0.00001238 * t3 - 0.000000058 * t4),
        .moonLatitudeArgument = reducedDegrees(160.7108 + 390.67050284 * k - 0.0016118 * t2 -
                                               0.00000227 * t3 + 0.000000011 * t4),
        .moonNodeLongitude =
            reducedDegrees(124.7746 - 1.56375588 * k + 0.0020672 * t2 + 0.00000215 * t3),
    };
}

}  // namespace lunoval::ephemeris
