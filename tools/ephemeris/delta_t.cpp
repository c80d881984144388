#include "ephemeris/delta_t.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>

#include "ephemeris/julian_day.hpp"

namespace lunoval::ephemeris {

namespace {

// ΔT = Σ cᵢ tⁱ with t = y − epoch, used from startYear to the next polynomial's startYear.
struct Polynomial {
    double startYear;
    double epoch;
    std::array<double, 6> coefficients;
};

constexpr std::array<Polynomial, 6> polynomials{{
    {1900, 1900, {-2.79, 1.494119, -0.0598939, 0.0061966, -0.000197}},
    {1920, 1920, {21.20, 0.84493, -0.076100, 0.0020936}},
    {1941, 1950, {29.07, 0.407, -1.0 / 233, 1.0 / 2547}},
    {1961, 1975, {45.45, 1.067, -1.0 / 260, -1.0 / 718}},
    {1986, 2000, {63.86, 0.3345, -0.060374, 0.0017275, 0.000651814, 0.00002373599}},
    {2005, 2000, {62.92, 0.32217, 0.005589}},
}};

constexpr double longTermStartYear = 2050;

// Observed ΔT on 1 January of 2005 to 2025 (leap seconds + 32.184 s − DUT1). The earth has
// turned faster than the 2005–2050 polynomial foresaw: by 2025 it is 5 s behind.
constexpr double firstObservedYear = 2005;
constexpr std::array<double, 21> observed{64.69, 64.85, 65.15, 65.46, 65.78, 66.07, 66.32,
                                          66.60, 66.91, 67.28, 67.64, 68.10, 68.59, 68.97,
                                          69.22, 69.36, 69.36, 69.29, 69.20, 69.18, 69.14};
constexpr double lastObservedYear = firstObservedYear + observed.size() - 1;

double evaluate(const Polynomial& polynomial, double decimalYear) {
    const double t = decimalYear - polynomial.epoch;
    return std::accumulate(polynomial.coefficients.rbegin(), polynomial.coefficients.rend(), 0.0,
                           [t](double sum, double coefficient) { return sum * t + coefficient; });
}

// Morrison & Stephenson's long-term parabola, with a linear term that joins it to the
// 2005–2050 polynomial.
double longTerm(double decimalYear) {
    const double u = (decimalYear - 1820) / 100;
    return -20 + 32 * u * u - 0.5628 * (2150 - decimalYear);
}

constexpr double secondsPerDay = 86400.0;
constexpr double monthsPerYear = 12.0;

double interpolateObserved(double decimalYear) {
    const double offset = decimalYear - firstObservedYear;
    const auto index = static_cast<std::size_t>(offset);
    const double fraction = offset - static_cast<double>(index);
    return observed.at(index) + fraction * (observed.at(index + 1) - observed.at(index));
}

// From the last observation the gap to the polynomial closes linearly by 2050, where the
// polynomial meets the long-term parabola.
double predicted(double decimalYear) {
    const auto& polynomial = polynomials.back();
    const double gap = observed.back() - evaluate(polynomial, lastObservedYear);
    const double remaining =
        (longTermStartYear - decimalYear) / (longTermStartYear - lastObservedYear);
    return evaluate(polynomial, decimalYear) + gap * remaining;
}

}  // namespace

double deltaTSeconds(double decimalYear) {
    if (decimalYear >= longTermStartYear) return longTerm(decimalYear);
    if (decimalYear >= lastObservedYear) return predicted(decimalYear);
    if (decimalYear >= firstObservedYear) return interpolateObserved(decimalYear);
    const auto* const next =
        std::ranges::upper_bound(polynomials, decimalYear, {}, &Polynomial::startYear);
    return evaluate(next == polynomials.begin() ? *next : *std::prev(next), decimalYear);
}

double universalJulianDay(double julianEphemerisDay) {
    const date::year_month_day date = calendarDate(julianEphemerisDay);
    const double decimalYear =
        static_cast<int>(date.year()) + (static_cast<unsigned>(date.month()) - 0.5) / monthsPerYear;
    return julianEphemerisDay - deltaTSeconds(decimalYear) / secondsPerDay;
}

}  // namespace lunoval::ephemeris
