#include "ephemeris/principal_phases.hpp"

#include <array>
#include <cmath>
#include <numbers>
#include <span>

#include "ephemeris/lunation.hpp"

namespace lunoval::ephemeris {

namespace {

// coefficient × E^eccentricityPower × sin(m M + m′ M′ + f F + n Ω), in days.
struct PeriodicTerm {
    double coefficient;
    int eccentricityPower;
    int m;
    int mPrime;
    int f;
    int n;
};

constexpr std::array<PeriodicTerm, 25> newMoonTerms{{
    {-0.40720, 0, 0, 1, 0, 0}, {0.17241, 1, 1, 0, 0, 0},    {0.01608, 0, 0, 2, 0, 0},
    {0.01039, 0, 0, 0, 2, 0},  {0.00739, 1, -1, 1, 0, 0},   {-0.00514, 1, 1, 1, 0, 0},
    {0.00208, 2, 2, 0, 0, 0},  {-0.00111, 0, 0, 1, -2, 0},  {-0.00057, 0, 0, 1, 2, 0},
    {0.00056, 1, 1, 2, 0, 0},  {-0.00042, 0, 0, 3, 0, 0},   {0.00042, 1, 1, 0, 2, 0},
    {0.00038, 1, 1, 0, -2, 0}, {-0.00024, 1, -1, 2, 0, 0},  {-0.00017, 0, 0, 0, 0, 1},
    {-0.00007, 0, 2, 1, 0, 0}, {0.00004, 0, 0, 2, -2, 0},   {0.00004, 0, 3, 0, 0, 0},
    {0.00003, 0, 1, 1, -2, 0}, {0.00003, 0, 0, 2, 2, 0},    {-0.00003, 0, 1, 1, 2, 0},
    {0.00003, 0, -1, 1, 2, 0}, {-0.00002, 0, -1, 1, -2, 0}, {-0.00002, 0, 1, 3, 0, 0},
    {0.00002, 0, 0, 4, 0, 0},
}};

constexpr std::array<PeriodicTerm, 25> fullMoonTerms{{
    {-0.40614, 0, 0, 1, 0, 0}, {0.17302, 1, 1, 0, 0, 0},    {0.01614, 0, 0, 2, 0, 0},
    {0.01043, 0, 0, 0, 2, 0},  {0.00734, 1, -1, 1, 0, 0},   {-0.00515, 1, 1, 1, 0, 0},
    {0.00209, 2, 2, 0, 0, 0},  {-0.00111, 0, 0, 1, -2, 0},  {-0.00057, 0, 0, 1, 2, 0},
    {0.00056, 1, 1, 2, 0, 0},  {-0.00042, 0, 0, 3, 0, 0},   {0.00042, 1, 1, 0, 2, 0},
    {0.00038, 1, 1, 0, -2, 0}, {-0.00024, 1, -1, 2, 0, 0},  {-0.00017, 0, 0, 0, 0, 1},
    {-0.00007, 0, 2, 1, 0, 0}, {0.00004, 0, 0, 2, -2, 0},   {0.00004, 0, 3, 0, 0, 0},
    {0.00003, 0, 1, 1, -2, 0}, {0.00003, 0, 0, 2, 2, 0},    {-0.00003, 0, 1, 1, 2, 0},
    {0.00003, 0, -1, 1, 2, 0}, {-0.00002, 0, -1, 1, -2, 0}, {-0.00002, 0, 1, 3, 0, 0},
    {0.00002, 0, 0, 4, 0, 0},
}};

constexpr std::array<PeriodicTerm, 25> quarterTerms{{
    {-0.62801, 0, 0, 1, 0, 0}, {0.17172, 1, 1, 0, 0, 0},    {-0.01183, 1, 1, 1, 0, 0},
    {0.00862, 0, 0, 2, 0, 0},  {0.00804, 0, 0, 0, 2, 0},    {0.00454, 1, -1, 1, 0, 0},
    {0.00204, 2, 2, 0, 0, 0},  {-0.00180, 0, 0, 1, -2, 0},  {-0.00070, 0, 0, 1, 2, 0},
    {-0.00040, 0, 0, 3, 0, 0}, {-0.00034, 1, -1, 2, 0, 0},  {0.00032, 1, 1, 0, 2, 0},
    {0.00032, 1, 1, 0, -2, 0}, {-0.00028, 2, 2, 1, 0, 0},   {0.00027, 1, 1, 2, 0, 0},
    {-0.00017, 0, 0, 0, 0, 1}, {-0.00005, 0, -1, 1, -2, 0}, {0.00004, 0, 0, 2, 2, 0},
    {-0.00004, 0, 1, 1, 2, 0}, {0.00004, 0, -2, 1, 0, 0},   {0.00003, 0, 1, 1, -2, 0},
    {0.00003, 0, 3, 0, 0, 0},  {0.00002, 0, 0, 2, -2, 0},   {0.00002, 0, -1, 1, 2, 0},
    {-0.00002, 0, 1, 3, 0, 0},
}};

// coefficient × sin(A), A = constant + rate k + quadratic T², in days; the same for every phase.
struct PlanetaryTerm {
    double coefficient;
    double constant;
    double rate;
    double quadratic;
};

constexpr std::array<PlanetaryTerm, 14> planetaryTerms{{
    {0.000325, 299.77, 0.107408, -0.009173},
    {0.000165, 251.88, 0.016321, 0},
    {0.000164, 251.83, 26.651886, 0},
    {0.000126, 349.42, 36.412478, 0},
    {0.000110, 84.66, 18.206239, 0},
    {0.000062, 141.74, 53.303771, 0},
    {0.000060, 207.14, 2.453732, 0},
    {0.000056, 154.84, 7.306860, 0},
    {0.000047, 34.52, 27.261239, 0},
    {0.000042, 207.19, 0.121824, 0},
    {0.000040, 291.34, 1.844379, 0},
    {0.000037, 161.72, 24.198154, 0},
    {0.000035, 239.56, 25.513099, 0},
    {0.000023, 331.55, 3.592518, 0},
}};

double radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

double periodicSum(std::span<const PeriodicTerm> terms, const LunationArguments& a) {
    double sum = 0;
    for (const PeriodicTerm& term : terms) {
        const double angle = term.m * a.sunAnomaly + term.mPrime * a.moonAnomaly +
                             term.f * a.moonLatitudeArgument + term.n * a.moonNodeLongitude;
        sum += term.coefficient * std::pow(a.eccentricityFactor, term.eccentricityPower) *
               std::sin(radians(angle));
    }
    return sum;
}

double planetarySum(const LunationArguments& a) {
    double sum = 0;
    for (const PlanetaryTerm& term : planetaryTerms) {
        const double angle =
            term.constant + term.rate * a.k + term.quadratic * a.centuries * a.centuries;
        sum += term.coefficient * std::sin(radians(angle));
    }
    return sum;
}

// W: added at first quarter, subtracted at last quarter.
double quarterCorrection(const LunationArguments& a) {
    const double m = radians(a.sunAnomaly);
    const double mPrime = radians(a.moonAnomaly);
    const double f = radians(a.moonLatitudeArgument);
    return 0.00306 - 0.00038 * a.eccentricityFactor * std::cos(m) + 0.00026 * std::cos(mPrime) -
           0.00002 * std::cos(mPrime - m) + 0.00002 * std::cos(mPrime + m) +
           0.00002 * std::cos(2 * f);
}

double phaseCorrection(PrincipalPhase phase, const LunationArguments& a) {
    switch (phase) {
        case PrincipalPhase::newMoon:
            return periodicSum(newMoonTerms, a);
        case PrincipalPhase::fullMoon:
            return periodicSum(fullMoonTerms, a);
        case PrincipalPhase::firstQuarter:
            return periodicSum(quarterTerms, a) + quarterCorrection(a);
        case PrincipalPhase::lastQuarter:
            break;
    }
    return periodicSum(quarterTerms, a) - quarterCorrection(a);
}

}  // namespace

PhaseInstant principalPhase(std::int64_t phaseNumber) {
    const auto phase = static_cast<PrincipalPhase>(
        ((phaseNumber % phasesPerLunation) + phasesPerLunation) % phasesPerLunation);
    const LunationArguments arguments =
        lunationArguments(static_cast<double>(phaseNumber) / phasesPerLunation);
    return {phase,
            arguments.meanPhaseJde + phaseCorrection(phase, arguments) + planetarySum(arguments)};
}

}  // namespace lunoval::ephemeris
