#pragma once

#include <optional>

#include "platform/location_services.hpp"
#include "platform/user_defaults.hpp"

namespace lunoval {

// The widget's own memory of where it was: the last fix, when it was written, and when a fix
// was last asked for, in the app group's shared defaults.
namespace widgetcache {

inline constexpr double kMaximumAgeSeconds = 86400;
inline constexpr double kMoveThresholdMeters = 50000;
inline constexpr double kRequestThrottleSeconds = 3600;

// Stamped with `now`, which the rules below measure ages against.
void saveLocationToCache(const UserDefaults& defaults, const Location& location, Date now);
void markLocationRequest(const UserDefaults& defaults, Date now);
// At most one fresh fix an hour.
bool shouldRequestLocation(const UserDefaults& defaults, Date now);
// The cached point while it is young and the device has not moved far from it; otherwise the
// current location (which then replaces the cache).
std::optional<Location> cachedLocation(const UserDefaults& defaults,
                                       std::optional<Location> current, Date now);

}  // namespace widgetcache

// The app group shared with the host app.
UserDefaults appGroupDefaults();

}  // namespace lunoval
