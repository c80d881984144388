#pragma once

#include <cstdint>
#include <optional>

namespace lunoval::eclipsegen {

enum class Syzygy { newMoon, fullMoon };

// The circumstances of greatest eclipse at one syzygy, after Meeus, Astronomical Algorithms
// (2nd ed.), chapter 54.
struct EclipseGeometry {
    double julianEphemerisDay = 0;  // TT, instant of greatest eclipse
    // Least distance, in equatorial earth radii, of the moon's shadow axis from the earth's
    // centre (new moon) or of the moon's centre from the axis of the earth's shadow (full moon);
    // positive when the moon passes north of it.
    double gamma = 0;
    // Radius of the moon's umbral cone in the fundamental plane, in earth radii: negative when the
    // umbra reaches beyond the plane. It also widens or narrows the earth's shadow at the moon.
    double u = 0;
};

// The geometry at the new moon (or the full moon that follows it) of lunation number `lunation`,
// where lunation 0 begins with the new moon of 2000 January 6. Absent when the moon is too far
// from a node for any eclipse.
std::optional<EclipseGeometry> eclipseGeometry(std::int64_t lunation, Syzygy syzygy);

}  // namespace lunoval::eclipsegen
