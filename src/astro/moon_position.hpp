#pragma once

#include <optional>

#include "astro/observer.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval::Solar {

struct HorizontalPosition {
    double altitude;  // degrees above the horizon, refraction included
    double azimuth;   // degrees from north through east
};

HorizontalPosition moonPosition(Date date, Observer observer);

struct MoonRiseSet {
    std::optional<Date> rise;
    std::optional<Date> set;
};

// The moon's rise and set within the 24 hours after local midnight of `date` in `zone`; each
// absent when it does not happen in that span. One search finds both.
MoonRiseSet moonRiseAndSet(Date date, const TimeZone& zone, Observer observer);

enum class Crossing { rise, set };
// The rise or the set alone.
std::optional<Date> moonRiseSet(Date date, const TimeZone& zone, Crossing crossing,
                                Observer observer);

}  // namespace lunoval::Solar
