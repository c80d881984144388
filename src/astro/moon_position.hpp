#pragma once

#include <optional>

#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval::Solar {

struct HorizontalPosition {
    double altitude;  // degrees above the horizon, refraction included
    double azimuth;   // degrees from north through east
};

HorizontalPosition moonPosition(Date date, double latitude, double longitude);

struct MoonRiseSet {
    std::optional<Date> rise;
    std::optional<Date> set;
};

// The moon's rise and set within the 24 hours after local midnight of `date` in `zone`; each
// absent when it does not happen in that span. One search finds both.
MoonRiseSet moonRiseAndSet(Date date, const TimeZone& zone, double latitude, double longitude);

// The rise (or the set) alone.
std::optional<Date> moonRiseSet(Date date, const TimeZone& zone, bool wantRise, double latitude,
                                double longitude);

}  // namespace lunoval::Solar
