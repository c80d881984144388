#include "locations/geo_location_data.hpp"

namespace lunoval {

void GeoLocationData::SetLocation(Location position, std::string locationName,
                                  std::string timezoneName, std::int64_t gmtOffsetSeconds,
                                  bool customTimezone) {
    latitude = position.latitude;
    longitude = position.longitude;
    name = std::move(locationName);
    timezoneId = std::move(timezoneName);
    gmtOffset = gmtOffsetSeconds;
    isCustomTimezone = customTimezone;
    locationInitialized = true;
}

}  // namespace lunoval
