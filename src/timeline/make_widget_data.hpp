#pragma once

#include <optional>

#include "platform/location_services.hpp"
#include "platform/user_defaults.hpp"
#include "timeline/moon_widget_data.hpp"
#include "timeline/request_context.hpp"

namespace lunoval {

// The record the host app saved under "widgetData", if any decodes; `selectedTime` is `now`.
std::optional<MoonWidgetData> loadFromAppGroup(const UserDefaults& defaults, Date now);

// Chooses the place: the device location in the device zone, else the host app's saved place,
// else (when not authorized) the record that asks for permission; then fills it for now.
// Absent only when authorized with neither a location nor a saved place.
std::optional<MoonWidgetData> makeWidgetData(std::optional<Location> location, bool authorized,
                                             const UserDefaults& defaults,
                                             const RequestContext& context);

}  // namespace lunoval
