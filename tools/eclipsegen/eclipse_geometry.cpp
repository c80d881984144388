#include "eclipsegen/eclipse_geometry.hpp"

#include <array>
#include <cmath>
#include <numbers>
#include <span>

#include "ephemeris/lunation.hpp"

namespace lunoval::eclipsegen {

namespace {

// coefficient × E^eccentricityPower × sin or cos (m M + m′ M′ + f F₁ + n Ω).
struct Term {
    double coefficient;
    int eccentricityPower;
    int m;
    int mPrime;
    int f1;
    int n;
};

// Correction from the mean syzygy to greatest eclipse, in days; the first two terms differ
// between new and full moon.
constexpr std::array<Term, 2> newMoonTerms{{{-0.4075, 0, 0, 1, 0, 0}, {0.1721, 1, 1, 0, 0, 0}}};
constexpr std::array<Term, 2> fullMoonTerms{{{-0.4065, 0, 0, 1, 0, 0}, {0.1727, 1, 1, 0, 0, 0}}};
constexpr std::array<Term, 13> commonTerms{{
    {0.0161, 0, 0, 2, 0, 0},
    {-0.0097, 0, 0, 0, 2, 0},
    {0.0073, 1, -1, 1, 0, 0},
    {-0.0050, 1, 1, 1, 0, 0},
    {-0.0023, 0, 0, 1, -2, 0},
    {0.0021, 1, 2, 0, 0, 0},
    {0.0012, 0, 0, 1, 2, 0},
    {0.0006, 1, 1, 2, 0, 0},
    {-0.0004, 0, 0, 3, 0, 0},
    {-0.0003, 1, 1, 0, 2, 0},
    {-0.0002, 1, 1, 0, -2, 0},
    {-0.0002, 1, -1, 2, 0, 0},
    {-0.0002, 0, 0, 0, 0, 1},
}};

// P (sines) and Q (cosines) locate the moon's centre in the fundamental plane.
constexpr std::array<Term, 7> pTerms{{
    {0.2070, 1, 1, 0, 0, 0},
    {0.0024, 1, 2, 0, 0, 0},
    {-0.0392, 0, 0, 1, 0, 0},
    {0.0116, 0, 0, 2, 0, 0},
    {-0.0073, 1, 1, 1, 0, 0},
    {0.0067, 1, -1, 1, 0, 0},
    {0.0118, 0, 0, 0, 2, 0},
}};
constexpr std::array<Term, 6> qTerms{{
    {5.2207, 0, 0, 0, 0, 0},
    {-0.0048, 1, 1, 0, 0, 0},
    {0.0020, 1, 2, 0, 0, 0},
    {-0.3299, 0, 0, 1, 0, 0},
    {-0.0060, 1, 1, 1, 0, 0},
    {0.0041, 1, -1, 1, 0, 0},
}};
constexpr std::array<Term, 5> uTerms{{
    {0.0059, 0, 0, 0, 0, 0},
    {0.0046, 1, 1, 0, 0, 0},
    {-0.0182, 0, 0, 1, 0, 0},
    {0.0004, 0, 0, 2, 0, 0},
    {-0.0005, 0, 1, 1, 0, 0},
}};

// Beyond this |sin F| the moon is too far from its node for the shadows to meet.
constexpr double largestSinF = 0.36;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

// The lunation's angles with F₁, the argument of latitude corrected for the node's motion.
struct Arguments {
    ephemeris::LunationArguments lunation;
    double f1 = 0;  // degrees
};

double termAngle(const Term& term, const Arguments& a) {
    return radians(term.m * a.lunation.sunAnomaly + term.mPrime * a.lunation.moonAnomaly +
                   term.f1 * a.f1 + term.n * a.lunation.moonNodeLongitude);
}

double termScale(const Term& term, const Arguments& a) {
    return term.coefficient * std::pow(a.lunation.eccentricityFactor, term.eccentricityPower);
}

double sineSum(std::span<const Term> terms, const Arguments& a) {
    double sum = 0;
    for (const Term& term : terms) sum += termScale(term, a) * std::sin(termAngle(term, a));
    return sum;
}

double cosineSum(std::span<const Term> terms, const Arguments& a) {
    double sum = 0;
    for (const Term& term : terms) sum += termScale(term, a) * std::cos(termAngle(term, a));
    return sum;
}

double greatestEclipseJde(const Arguments& a, Syzygy syzygy) {
    const double t = a.lunation.centuries;
    const double a1 = 299.77 + 0.107408 * a.lunation.k - 0.009173 * t * t;
    const std::span<const Term> ownTerms =
        syzygy == Syzygy::newMoon ? std::span<const Term>(newMoonTerms) : fullMoonTerms;
    return a.lunation.meanPhaseJde + sineSum(ownTerms, a) + sineSum(commonTerms, a) +
           0.0003 * std::sin(radians(a1));
}

double gamma(const Arguments& a) {
    const double f1 = radians(a.f1);
    const double w = std::abs(std::cos(f1));
    return (sineSum(pTerms, a) * std::cos(f1) + cosineSum(qTerms, a) * std::sin(f1)) *
           (1 - 0.0048 * w);
}

}  // namespace

std::optional<EclipseGeometry> eclipseGeometry(std::int64_t lunation, Syzygy syzygy) {
    const double k = static_cast<double>(lunation) + (syzygy == Syzygy::fullMoon ? 0.5 : 0.0);
    const ephemeris::LunationArguments lunationArguments = ephemeris::lunationArguments(k);
    if (std::abs(std::sin(radians(lunationArguments.moonLatitudeArgument))) > largestSinF)
        return std::nullopt;
    const Arguments a{lunationArguments,
                      lunationArguments.moonLatitudeArgument -
                          0.02665 * std::sin(radians(lunationArguments.moonNodeLongitude))};
    return EclipseGeometry{greatestEclipseJde(a, syzygy), gamma(a), cosineSum(uTerms, a)};
}

}  // namespace lunoval::eclipsegen
