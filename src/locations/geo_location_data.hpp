#pragma once

#include <cstdint>
#include <string>

#include "platform/location_services.hpp"

namespace lunoval {

// One place of the saved-locations list.
struct GeoLocationData {
    std::string name;
    double latitude = 0;   // degrees, north positive
    double longitude = 0;  // degrees, east positive
    std::string timezoneId;
    std::int64_t gmtOffset = 0;  // seconds east of GMT, as the place was saved
    bool isCustomTimezone = false;
    bool locationInitialized = false;

    void setLatitude(double value) { latitude = value; }
    void setLongitude(double value) { longitude = value; }
    // Sets every field at once; a place set this way holds a location.
    void SetLocation(Location position, std::string locationName, std::string timezoneName,
                     std::int64_t gmtOffsetSeconds, bool customTimezone);
};

}  // namespace lunoval
