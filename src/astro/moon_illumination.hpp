#pragma once

#include <optional>

#include "astro/observer.hpp"
#include "platform/date.hpp"

namespace lunoval::Solar {

struct Illumination {
    double fraction;         // lit fraction of the disc, 0 to 1
    double brightLimbAngle;  // minus the bright-limb angle, radians
    double phaseAngle;       // degrees; positive while waxing
};

// Geocentric: the same for every place.
Illumination moonIllumination(Date date);

// Rotation of the lit side as the observer sees it, degrees in [-180, 180].
double moonTilt(Date date, Observer observer);

// The moon's upper meridian transit nearest `date`, as seen from the place.
Date moonTransit(Date date, Observer observer);

// Which moment a disc's tilt is taken at. The nearest transit draws the disc as the moon stands
// high in the sky.
struct Tilt {
    enum class Kind { none, atInstant, atNearestTransit };
    Kind kind = Kind::none;
    // The moment itself, or the moment whose nearest transit is meant.
    Date instant;

    static Tilt none() { return {}; }
    static Tilt at(Date instant) { return {.kind = Kind::atInstant, .instant = instant}; }
    static Tilt atTransitNearest(Date instant) {
        return {.kind = Kind::atNearestTransit, .instant = instant};
    }
};

// Degrees; 0 without a tilt.
double tiltAngle(const Tilt& tilt, Observer observer);

}  // namespace lunoval::Solar

namespace lunoval {

struct MoonIllumination {
    static double illuminationForDate(Date date) { return Solar::moonIllumination(date).fraction; }
};

}  // namespace lunoval
