#pragma once

#include <map>
#include <memory>
#include <string_view>

#include "eclipse/eclipse_event.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// The catalogue by instant, earliest first. Its events are shared with every lookup, which
// sets their visibility for its own place.
using EclipseTable = std::map<Date, std::shared_ptr<EclipseEvent>>;

// The events of the catalogue's text, one "MM/dd/yyyy HH:mm, KEY" line each (UTC). Blank and
// "#" lines are skipped; any other line that cannot be used is skipped with a warning naming
// its line number. Years outside 1900-2100, counted in `yearZone`, are rejected; of two
// events at one instant the first is kept.
EclipseTable parseCatalogue(std::string_view text, const TimeZone& yearZone);

}  // namespace lunoval
