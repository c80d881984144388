#pragma once

#include "timeline/moon_widget_data.hpp"
#include "timeline/request_context.hpp"

namespace lunoval {

// The entry with what drawing it needs besides its record: the month with each day's moon, the
// elevation day, and how its instants are written, through the request's own sources. Worked
// out where the entry is to be drawn, so that a request that only prints it reads no more
// tables than the record did.
MoonWidgetEntry withDetails(MoonWidgetEntry entry, const RequestContext& context);

// How the record's instants are written: the device's locale, in the record's zone, or the
// device's when the record names none it knows.
LocalFormat localFormat(const std::optional<MoonWidgetData>& record, const RequestContext& context);

}  // namespace lunoval
