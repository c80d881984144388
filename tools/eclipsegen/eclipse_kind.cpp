#include "eclipsegen/eclipse_kind.hpp"

#include <array>
#include <cmath>

namespace lunoval::eclipsegen {

namespace {

// |gamma| below which the shadow axis meets the earth, whose polar flattening brings the
// limit under 1.
constexpr double centralLimit = 0.9972;
// Above this u the umbral cone ends short of even the earth's nearest point, so a central
// eclipse is annular all along its path.
constexpr double surelyAnnularU = 0.0047;

constexpr std::array<std::string_view, 7> keys{"TSE", "ASE", "HSE", "PSE", "TLE", "PLE", "NLE"};

// u between 0 and 0.0047: the cone's tip lies near the earth's surface. Where the axis meets
// the surface it stands sqrt(1 − gamma²) earth radii nearer the moon than the fundamental plane,
// and the cone narrows by 0.00464 per earth radius, so with u below that product the eclipse is
// total mid-path and annular at the path's ends, where the axis grazes the earth.
EclipseKind nearlyTouchingKind(double gamma, double u) {
    const double omega = 0.00464 * std::sqrt(1 - gamma * gamma);
    return u < omega ? EclipseKind::hybridSolar : EclipseKind::annularSolar;
}

EclipseKind centralKind(double gamma, double u) {
    if (u < 0) return EclipseKind::totalSolar;
    if (u > surelyAnnularU) return EclipseKind::annularSolar;
    return nearlyTouchingKind(gamma, u);
}

}  // namespace

double partialSolarMagnitude(double gamma, double u) {
    return (1.5433 + u - std::abs(gamma)) / (0.5461 + 2 * u);
}

double penumbralMagnitude(double gamma, double u) {
    return (1.5573 + u - std::abs(gamma)) / 0.5450;
}

double umbralMagnitude(double gamma, double u) {
    return (1.0128 - u - std::abs(gamma)) / 0.5450;
}

std::optional<EclipseKind> solarEclipseKind(double gamma, double u) {
    const double distance = std::abs(gamma);
    if (distance < centralLimit) return centralKind(gamma, u);
    // The axis misses the earth but the umbra or antumbra, |u| wide, still touches it near a
    // pole. Published catalogues list such non-central eclipses under their shadow's type, not
    // as partial, and so does this one.
    if (distance < centralLimit + std::abs(u))
        return u < 0 ? EclipseKind::totalSolar : EclipseKind::annularSolar;
    if (partialSolarMagnitude(gamma, u) > 0) return EclipseKind::partialSolar;
    return std::nullopt;
}

std::optional<EclipseKind> lunarEclipseKind(double gamma, double u) {
    const double umbral = umbralMagnitude(gamma, u);
    if (umbral >= 1) return EclipseKind::totalLunar;
    if (umbral > 0) return EclipseKind::partialLunar;
    if (penumbralMagnitude(gamma, u) > 0) return EclipseKind::penumbralLunar;
    return std::nullopt;
}

std::string_view catalogueKey(EclipseKind kind) {
    return keys.at(static_cast<std::size_t>(kind));
}

}  // namespace lunoval::eclipsegen
