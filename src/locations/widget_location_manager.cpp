#include "locations/widget_location_manager.hpp"

#include "locations/widget_location_cache.hpp"
#include "platform/log.hpp"
#include "platform/number_text.hpp"

namespace lunoval {

namespace {

std::string coordinates(const Location& location) {
    return doubleDescription(location.latitude) + ", " + doubleDescription(location.longitude);
}

bool isAuthorized(AuthorizationStatus status) {
    return status == AuthorizationStatus::authorizedAlways ||
           status == AuthorizationStatus::authorizedWhenInUse;
}

}  // namespace

WidgetLocationManager::WidgetLocationManager(
    std::unique_ptr<PlatformLocationManager> locationManager, UserDefaults defaults, Clock clock)
    : locationManager_(std::move(locationManager)),
      defaults_(std::move(defaults)),
      clock_(std::move(clock)) {
    if (locationManager_) locationManager_->setDelegate(this);
}

WidgetLocationManager::~WidgetLocationManager() {
    if (locationManager_) locationManager_->setDelegate(nullptr);
}

void WidgetLocationManager::answer(std::optional<Location> location, bool success) const {
    if (handler_) handler_(location, success);
}

void WidgetLocationManager::requestLocation(FreshFix freshFix, const Completion& completion) {
    if (!locationManager_) {
        log::line("⚠️ Widget: Location manager not initialized");
        completion(std::nullopt, false, false);
        return;
    }
    const bool authorized = locationManager_->isAuthorizedForWidgetUpdates();
    const auto status = static_cast<int>(locationManager_->authorizationStatus());
    handler_ = [completion, authorized](std::optional<Location> location, bool success) {
        completion(location, success, authorized);
    };
    log::line("✅ Widget: Authorization - App: " + std::to_string(status) +
              ", Widget: " + (authorized ? "true" : "false"));
    if (!authorized) {
        log::line("⚠️ Widget: Not authorized for widget updates");
        completion(std::nullopt, false, false);
        return;
    }
    if (const auto system = locationManager_->location()) {
        log::line("✅ Widget: Using system cached location: " + coordinates(*system));
        widgetcache::saveLocationToCache(defaults_, *system, clock_());
        answer(system, true);
        return;
    }
    resolveWithoutSystemFix(freshFix);
}

void WidgetLocationManager::resolveWithoutSystemFix(FreshFix freshFix) {
    const Date now = clock_();
    const auto cached = widgetcache::cachedLocation(defaults_, std::nullopt, now);
    if (!cached) {
        if (freshFix == FreshFix::notAllowed) {
            log::line("⚠️ Widget: No cached location and cannot request fresh");
            answer(std::nullopt, true);
        } else if (widgetcache::shouldRequestLocation(defaults_, now)) {
            log::line("📍 Widget: No cached location, requesting fresh location...");
            askForFix();
        } else {
            log::line("⏸️ Widget: Location request throttled, using nil");
            answer(std::nullopt, true);
        }
        return;
    }
    log::line("✅ Widget: Using widget cached location: " + coordinates(*cached));
    answer(cached, true);
    if (freshFix == FreshFix::notAllowed) return;
    if (!widgetcache::shouldRequestLocation(defaults_, now)) {
        const double last =
            defaults_.doubleForKey("WidgetLastLocationRequestTimestamp").value_or(0);
        const auto minutes = static_cast<long long>((now.timeIntervalSince1970() - last) / 60);
        log::line("⏸️ Widget: Skipping location request (throttled, last request " +
                  std::to_string(minutes) + " minutes ago)");
        return;
    }
    log::line("📍 Widget: Requesting fresh location in background (throttle check passed)...");
    askForFix();
}

void WidgetLocationManager::askForFix() {
    widgetcache::markLocationRequest(defaults_, clock_());
    awaitingFix_ = true;
    locationManager_->requestLocation();
}

void WidgetLocationManager::didUpdateLocations(const std::vector<Location>& locations) {
    awaitingFix_ = false;
    if (locations.empty()) {
        answer(std::nullopt, true);
        return;
    }
    const Location& latest = locations.back();
    log::line("✅ Widget: Received location: " + coordinates(latest));
    widgetcache::saveLocationToCache(defaults_, latest, clock_());
    answer(latest, true);
}

void WidgetLocationManager::didFailWithError(const LocationError& error) {
    awaitingFix_ = false;
    log::line("⚠️ Widget Location Error: " + error.localizedDescription);
    if (locationManager_ && isAuthorized(locationManager_->authorizationStatus())) {
        const auto cached =
            widgetcache::cachedLocation(defaults_, locationManager_->location(), clock_());
        if (!cached) {
            log::line("⚠️ Widget: No valid cached location available");
            answer(std::nullopt, true);
            return;
        }
        log::line("✅ Widget: Using cached location as fallback");
        answer(cached, true);
        return;
    }
    answer(std::nullopt, false);
}

}  // namespace lunoval
