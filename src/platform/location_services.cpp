#include "platform/location_services.hpp"

#include <GeographicLib/Geodesic.hpp>
#include <cmath>

#include "platform/geoclue_location_manager.hpp"
#include "platform/number_text.hpp"

namespace lunoval {

bool isOnTheGlobe(const Location& location) {
    return std::fabs(location.latitude) <= 90 && std::fabs(location.longitude) <= 180;
}

double distanceMeters(const Location& from, const Location& to) {
    double meters = 0;
    GeographicLib::Geodesic::WGS84().Inverse(from.latitude, from.longitude, to.latitude,
                                             to.longitude, meters);
    return meters;
}

void PlatformLocationManager::answerLater(MainQueue& queue, double seconds,
                                          std::function<void(PlatformLocationDelegate&)> answer) {
    queue.asyncAfter(seconds, [this, alive = std::weak_ptr(alive_), answer = std::move(answer)] {
        if (!alive.expired() && delegate_ != nullptr) answer(*delegate_);
    });
}

namespace {

// Answers as the configured service would, through the main queue like the real one.
class StandInLocationManager : public PlatformLocationManager {
  public:
    StandInLocationManager(LocationService service, MainQueue& queue)
        : service_(service), queue_(queue) {}

    [[nodiscard]] AuthorizationStatus authorizationStatus() const override {
        switch (service_.kind) {
            case LocationService::Kind::denied:
                return AuthorizationStatus::denied;
            case LocationService::Kind::undetermined:
                return AuthorizationStatus::notDetermined;
            default:
                return AuthorizationStatus::authorizedAlways;
        }
    }
    [[nodiscard]] bool isAuthorizedForWidgetUpdates() const override {
        return authorizationStatus() == AuthorizationStatus::authorizedAlways;
    }
    [[nodiscard]] std::optional<Location> location() const override {
        if (service_.kind == LocationService::Kind::fixed) return service_.fix;
        return std::nullopt;
    }
    void requestLocation() override { answer(); }
    void startUpdatingLocation() override { answer(); }
    void stopUpdatingLocation() override {}

  private:
    void answer() {
        switch (service_.kind) {
            case LocationService::Kind::silent:
                return;
            case LocationService::Kind::fixed:
            case LocationService::Kind::late:
                answerLater(queue_, service_.delaySeconds, [fix = service_.fix](auto& delegate) {
                    delegate.didUpdateLocations({fix});
                });
                return;
            default:
                answerLater(queue_, 0, [error = failure()](auto& delegate) {
                    delegate.didFailWithError(error);
                });
        }
    }

    [[nodiscard]] LocationError failure() const {
        if (service_.kind == LocationService::Kind::denied) {
            return {.localizedDescription = "Access to location services was denied.",
                    .code = LocationError::denied};
        }
        return {.localizedDescription = "The location could not be determined.",
                .code = LocationError::locationUnknown};
    }

    LocationService service_;
    MainQueue& queue_;
};

// A configured position is as good as a satellite fix.
Location satelliteFix(Location position) {
    constexpr double kAccuracyMeters = 5;
    return {position.latitude, position.longitude, kAccuracyMeters};
}

// "SECONDS:LAT,LNG", a delay of at most a day.
std::optional<LocationService> parseLate(std::string_view text) {
    constexpr double kMaxDelaySeconds = 86400;
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) return std::nullopt;
    const auto delay = decimalNumber(text.substr(0, colon));
    const auto fix = LocationService::parseCoordinates(text.substr(colon + 1));
    if (!delay || *delay < 0 || *delay > kMaxDelaySeconds || !fix) return std::nullopt;
    return LocationService{
        .kind = LocationService::Kind::late, .fix = satelliteFix(*fix), .delaySeconds = *delay};
}

}  // namespace

std::optional<Location> LocationService::parseCoordinates(std::string_view text) {
    const auto comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const auto latitude = decimalNumber(text.substr(0, comma));
    const auto longitude = decimalNumber(text.substr(comma + 1));
    if (!latitude || !longitude || std::fabs(*latitude) > 90 || std::fabs(*longitude) > 180) {
        return std::nullopt;
    }
    return Location{*latitude, *longitude};
}

std::optional<LocationService> LocationService::parse(std::string_view text) {
    using enum Kind;
    if (text == "geoclue") return LocationService{geoclue};
    if (text == "denied") return LocationService{denied};
    if (text == "undetermined") return LocationService{undetermined};
    if (text == "unavailable") return LocationService{unavailable};
    if (text == "silent") return LocationService{silent};
    if (text.starts_with("late:")) return parseLate(text.substr(5));
    constexpr std::string_view fixedPrefix = "fixed:";
    if (!text.starts_with(fixedPrefix)) return std::nullopt;
    const auto fix = parseCoordinates(text.substr(fixedPrefix.size()));
    if (!fix) return std::nullopt;
    return LocationService{fixed, satelliteFix(*fix)};
}

std::unique_ptr<PlatformLocationManager> makePlatformLocationManager(const LocationService& service,
                                                                     MainQueue& queue) {
    using enum LocationService::Kind;
    if (service.kind == geoclue || (service.kind == automatic && geoClueIsPresent())) {
        return makeGeoClueLocationManager(queue);
    }
    // Without GeoClue the machine has location services that never find a fix: the widget
    // then falls back to the saved place at once instead of asking for a permission nobody
    // could give.
    if (service.kind == automatic) return makePlatformLocationManager({unavailable}, queue);
    return std::make_unique<StandInLocationManager>(service, queue);
}

}  // namespace lunoval
