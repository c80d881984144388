#pragma once

#include <memory>

#include "platform/location_services.hpp"

namespace lunoval {

// Whether GeoClue is on the system bus, running or startable on demand. Answers at once on a
// machine without a system bus.
bool geoClueIsPresent();

// The device's location services through GeoClue, as the desktop id "lunoval". A grant of
// GeoClue's agent is "authorized always"; a refusal by configuration or by the user is
// "denied"; a missing service or bus is "not determined". Answers come on `queue`, which must
// be drained by a loop that also runs GLib's default main context (EventLoopQueue does).
std::unique_ptr<PlatformLocationManager> makeGeoClueLocationManager(MainQueue& queue);

}  // namespace lunoval
