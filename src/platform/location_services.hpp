#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/main_queue.hpp"

namespace lunoval {

struct Location {
    double latitude = 0;   // degrees, north positive
    double longitude = 0;  // degrees, east positive
    // Radius of uncertainty in metres; not positive when unknown.
    double horizontalAccuracy = 0;
};

// The accuracy to ask for when the best the device can do is wanted.
inline constexpr double kBestAccuracy = -1;

// Within ±90° of latitude and ±180° of longitude (so not NaN either).
bool isOnTheGlobe(const Location& location);

// Geodesic distance on the WGS-84 ellipsoid, in metres.
double distanceMeters(const Location& from, const Location& to);

// Authorization states as location services number them.
enum class AuthorizationStatus {
    notDetermined = 0,
    restricted = 1,
    denied = 2,
    authorizedAlways = 3,
    authorizedWhenInUse = 4,
};

// Errors of location services themselves carry this domain; others come from below them.
inline constexpr std::string_view kLocationErrorDomain = "LocationErrorDomain";

struct LocationError {
    enum Code { locationUnknown = 0, denied = 1 };
    std::string localizedDescription;
    std::string domain = std::string(kLocationErrorDomain);
    int code = locationUnknown;
};

// Receives a location manager's answers, always on the main queue.
class PlatformLocationDelegate {
  public:
    virtual ~PlatformLocationDelegate() = default;
    virtual void didUpdateLocations(const std::vector<Location>& locations) = 0;
    virtual void didFailWithError(const LocationError& error) = 0;
    virtual void didChangeAuthorization(AuthorizationStatus /*status*/) {}
};

// The device's location services as one client sees them.
class PlatformLocationManager {
  public:
    virtual ~PlatformLocationManager() = default;

    [[nodiscard]] virtual AuthorizationStatus authorizationStatus() const = 0;
    [[nodiscard]] virtual bool isAuthorizedForWidgetUpdates() const = 0;
    // The last known fix, if the system has one.
    [[nodiscard]] virtual std::optional<Location> location() const = 0;
    // One fix, answered later by one of the delegate's callbacks (or, for a service that never
    // answers, not at all).
    virtual void requestLocation() = 0;
    // Asks the user, when the status is not determined yet; the answer, if any, comes through
    // the delegate's authorization callback.
    virtual void requestWhenInUseAuthorization() {}
    virtual void startUpdatingLocation() = 0;
    virtual void stopUpdatingLocation() = 0;

    // The delegate is not owned; it must outlive the manager's pending answers.
    void setDelegate(PlatformLocationDelegate* delegate) { delegate_ = delegate; }

    // Hints for continuous updates; a backend may ignore them.
    double desiredAccuracy = kBestAccuracy;
    double distanceFilter = 0;  // metres

  protected:
    [[nodiscard]] PlatformLocationDelegate* delegate() const { return delegate_; }
    // Answers the delegate from the queue after `seconds`, unless this manager is gone by then.
    void answerLater(MainQueue& queue, double seconds,
                     std::function<void(PlatformLocationDelegate&)> answer);

  private:
    PlatformLocationDelegate* delegate_ = nullptr;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

// The stand-in services a device can be set up with.
struct LocationService {
    // `automatic` is GeoClue where it is on the system bus, else `unavailable`. `late` knows no
    // position until asked, and answers a request after its delay.
    enum class Kind { automatic, geoclue, fixed, late, denied, undetermined, unavailable, silent };
    Kind kind = Kind::undetermined;
    Location fix;  // the position of a fixed or late service
    double delaySeconds = 0;

    // "geoclue", "fixed:LAT,LNG", "late:SECONDS:LAT,LNG", "denied", "undetermined",
    // "unavailable" or "silent"; absent otherwise.
    static std::optional<LocationService> parse(std::string_view text);
    // "LAT,LNG" with latitude within ±90 and longitude within ±180.
    static std::optional<Location> parseCoordinates(std::string_view text);
};

std::unique_ptr<PlatformLocationManager> makePlatformLocationManager(const LocationService& service,
                                                                     MainQueue& queue);

}  // namespace lunoval
