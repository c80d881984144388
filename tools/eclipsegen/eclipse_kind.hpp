#pragma once

#include <optional>
#include <string_view>

namespace lunoval::eclipsegen {

enum class EclipseKind {
    totalSolar,
    annularSolar,
    hybridSolar,
    partialSolar,
    totalLunar,
    partialLunar,
    penumbralLunar,
};

// The magnitudes at greatest eclipse from Meeus' gamma and u: the fraction of the sun's diameter
// covered where a partial solar eclipse is greatest, and the fraction of the moon's diameter
// inside the earth's penumbra or umbra. A magnitude at or below 0 means the shadow is missed.
double partialSolarMagnitude(double gamma, double u);
double penumbralMagnitude(double gamma, double u);
double umbralMagnitude(double gamma, double u);

// The kind of eclipse at a new moon, or absent when the penumbra misses the earth.
std::optional<EclipseKind> solarEclipseKind(double gamma, double u);

// The kind of eclipse at a full moon, or absent when the moon misses the penumbra.
std::optional<EclipseKind> lunarEclipseKind(double gamma, double u);

// The catalogue's key: "TSE", "ASE", "HSE", "PSE", "TLE", "PLE" or "NLE".
std::string_view catalogueKey(EclipseKind kind);

}  // namespace lunoval::eclipsegen
