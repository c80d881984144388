#pragma once

#include <optional>

#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval::Solar {

// Sunrise and sunset on the local day of `date` in `zone`, when the sun's centre crosses
// -0.833 degrees; absent on a polar day or night.
std::optional<Date> sunrise(Date date, const TimeZone& zone, double latitude, double longitude);
std::optional<Date> sunset(Date date, const TimeZone& zone, double latitude, double longitude);

}  // namespace lunoval::Solar
