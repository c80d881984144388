#pragma once

#include "astro/observer.hpp"
#include "eclipse/eclipse_event.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// Whether the eclipse can be seen from the place, judged on its local day in `zone`: a lunar
// one while the moon is between that day's rise and set, a solar one between that day's
// sunrise and sunset, both ends included. A day without a rise or a set (polar sun, a moon
// that stays up or down) sees nothing.
bool isVisibleFrom(const EclipseEvent& event, const TimeZone& zone, Solar::Observer observer);

}  // namespace lunoval
