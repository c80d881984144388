#pragma once

#include <optional>

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
double moonTilt(Date date, double latitude, double longitude);

// The moon's upper meridian transit nearest `date`, as seen from the place.
Date moonTransit(Date date, double latitude, double longitude);

// The tilt at `date`; without one, the tilt at the transit nearest now, so the drawn disc
// matches the moon high in the sky.
double tiltAngleFor(std::optional<Date> date, double latitude, double longitude);

}  // namespace lunoval::Solar

namespace lunoval {

struct MoonIllumination {
    static double illuminationForDate(Date date) { return Solar::moonIllumination(date).fraction; }
};

}  // namespace lunoval
