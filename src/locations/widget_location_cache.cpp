#include "locations/widget_location_cache.hpp"

#include <cmath>

#include "platform/log.hpp"
#include "platform/number_text.hpp"

namespace lunoval {

namespace {
constexpr const char* kLatitude = "WidgetLastLocationLat";
constexpr const char* kLongitude = "WidgetLastLocationLng";
constexpr const char* kTimestamp = "WidgetLastLocationTimestamp";
constexpr const char* kRequestTimestamp = "WidgetLastLocationRequestTimestamp";

std::optional<double> number(const PropertyValue& stored, const char* key) {
    const auto found = stored.find(key);
    if (found == stored.end() || !found->is_number()) return std::nullopt;
    return found->get<double>();
}

// Absent when the key is missing or holds something that is not a number (NaN included); a
// stamp from the far future is a number, merely young.
std::optional<double> storedNumber(const PropertyValue& stored, const char* key) {
    const auto value = number(stored, key);
    return value && !std::isnan(*value) ? value : std::nullopt;
}

}  // namespace

UserDefaults appGroupDefaults() {
    return UserDefaults::suite("group.com.orvane.lunoval");
}

namespace widgetcache {

// One write, so a reader never pairs one fix's latitude with another's longitude.
void saveLocationToCache(const UserDefaults& defaults, const Location& location, Date now) {
    defaults.setObjects({{kLatitude, location.latitude},
                         {kLongitude, location.longitude},
                         {kTimestamp, now.timeIntervalSince1970()}});
}

void markLocationRequest(const UserDefaults& defaults, Date now) {
    defaults.setDouble(kRequestTimestamp, now.timeIntervalSince1970());
}

bool shouldRequestLocation(const UserDefaults& defaults, Date now) {
    const auto last = storedNumber(defaults.dictionaryRepresentation(), kRequestTimestamp);
    return !last || now.timeIntervalSince1970() - *last >= kRequestThrottleSeconds;
}

std::optional<Location> cachedLocation(const UserDefaults& defaults,
                                       std::optional<Location> current, Date now) {
    const auto stored = defaults.dictionaryRepresentation();
    const auto timestamp = storedNumber(stored, kTimestamp);
    const Location cached{number(stored, kLatitude).value_or(0),
                          number(stored, kLongitude).value_or(0)};
    // No fix lies off the globe, so such a point comes from a damaged or hand-edited file: it
    // is no cache, rather than a sky drawn for no place.
    if (!timestamp || !isOnTheGlobe(cached)) {
        if (current) {
            log::line("✅ Widget: No cache, using current location and saving it");
            saveLocationToCache(defaults, *current, now);
        }
        return current;
    }
    const double age = now.timeIntervalSince1970() - *timestamp;
    if (!(age < kMaximumAgeSeconds)) {
        log::line("⚠️ Widget: Cached location is too old (" + doubleDescription(age / 3600) +
                  " hours)");
        if (current) {
            log::line("✅ Widget: Cache expired, using current location and updating cache");
            saveLocationToCache(defaults, *current, now);
        }
        return current;
    }
    if (current) {
        const double distance = distanceMeters(*current, cached);
        if (distance > kMoveThresholdMeters) {
            log::line("⚠️ Widget: User moved " + doubleDescription(distance / 1000) +
                      "km, updating cache with new location");
            saveLocationToCache(defaults, *current, now);
            return current;
        }
    }
    log::line("✅ Widget: Using cached location from " + doubleDescription(age / 60) +
              " minutes ago");
    return cached;
}

}  // namespace widgetcache
}  // namespace lunoval
