#pragma once

#include <optional>

#include "astro/observer.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval::Solar {

// Sunrise and sunset on the local day of `date` in `zone`, when the sun's centre crosses
// -0.833 degrees; absent on a polar day or night.
std::optional<Date> sunrise(Date date, const TimeZone& zone, Observer observer);
std::optional<Date> sunset(Date date, const TimeZone& zone, Observer observer);

}  // namespace lunoval::Solar
