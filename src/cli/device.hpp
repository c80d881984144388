#pragma once

#include <optional>
#include <string>

#include "platform/clock.hpp"
#include "platform/date.hpp"
#include "platform/location_services.hpp"
#include "platform/main_queue.hpp"
#include "platform/time_zone.hpp"
#include "timeline/request_context.hpp"

namespace lunoval::device {

// The device this process runs as: its clock, zone and locale. Each starts from the
// environment; the command's device options fix them for the whole run.

// The current instant: the fixed one if set, else the system clock.
Date now();
Clock clock();
void fixNow(std::optional<Date> instant);

TimeZone timeZone();
void setTimeZone(std::optional<TimeZone> zone);

// A POSIX-style locale identifier such as "en_US" or "de_DE". One that cannot be used becomes
// the nearest that can, with one warning on standard error.
std::string localeIdentifier();
void setLocaleIdentifier(std::optional<std::string> identifier);

// The location services the device offers; until one is set up, GeoClue where the system bus
// has it, else a service whose authorization is not determined.
LocationService locationService();
void setLocationService(std::optional<LocationService> service);

// The device as one widget request sees it, its location managers answering on `queue`.
RequestContext requestContext(MainQueue& queue);

}  // namespace lunoval::device
