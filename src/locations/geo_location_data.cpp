#include "locations/geo_location_data.hpp"

namespace lunoval {

void GeoLocationData::SetLocation(double newLatitude, double newLongitude, std::string locationName,
                                  std::string timezoneName, std::int64_t gmtOffsetSeconds,
                                  bool customTimezone) {
    latitude = newLatitude;
    longitude = newLongitude;
    name = std::move(locationName);
    timezoneId = std::move(timezoneName);
    gmtOffset = gmtOffsetSeconds;
    isCustomTimezone = customTimezone;
    locationInitialized = true;
}

}  // namespace lunoval
