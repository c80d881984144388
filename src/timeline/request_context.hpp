#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/clock.hpp"
#include "platform/location_services.hpp"
#include "platform/time_zone.hpp"
#include "timeline/widget_data_builder.hpp"

namespace lunoval {

// Everything a widget request reads of the device it runs on, made once where the request
// enters (the command line, the widget host) and handed down.
struct RequestContext {
    Clock clock;
    // The device's zone; the device calendar is the Gregorian calendar in it.
    TimeZone deviceZone = TimeZone::utc();
    // Such as "de_DE": dates, times and upper case follow it.
    std::string locale;
    // The location services' manager for one request.
    std::function<std::unique_ptr<PlatformLocationManager>()> makeLocationManager;
    AstronomySources sources;
};

}  // namespace lunoval
