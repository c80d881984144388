#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/clock.hpp"
#include "platform/location_services.hpp"
#include "platform/user_defaults.hpp"

namespace lunoval {

// Settles one place for one widget request: the system's last fix, the widget's cache, or a
// fresh fix at most once an hour. Lives for one request; answers on the main queue.
class WidgetLocationManager : public PlatformLocationDelegate {
  public:
    using Completion =
        std::function<void(std::optional<Location> location, bool success, bool authorized)>;

    // Whether a request may ask location services for a new fix (at most once an hour).
    enum class FreshFix { allowed, notAllowed };

    // `locationManager` may be null when the platform cannot make one; `clock` stamps and ages
    // the cache.
    WidgetLocationManager(std::unique_ptr<PlatformLocationManager> locationManager,
                          UserDefaults defaults, Clock clock);
    ~WidgetLocationManager() override;
    WidgetLocationManager(const WidgetLocationManager&) = delete;
    WidgetLocationManager& operator=(const WidgetLocationManager&) = delete;

    // Every path answers before returning when fresh requests are not allowed.
    void requestLocation(FreshFix freshFix, const Completion& completion);

    // Between asking location services for a fix and their answer.
    [[nodiscard]] bool isAwaitingFix() const { return awaitingFix_; }

    [[nodiscard]] PlatformLocationManager* locationManager() const {
        return locationManager_.get();
    }

    void didUpdateLocations(const std::vector<Location>& locations) override;
    void didFailWithError(const LocationError& error) override;

  private:
    using Handler = std::function<void(std::optional<Location> location, bool success)>;

    void answer(std::optional<Location> location, bool success) const;
    void resolveWithoutSystemFix(FreshFix freshFix);
    void askForFix();

    std::unique_ptr<PlatformLocationManager> locationManager_;
    UserDefaults defaults_;
    Clock clock_;
    // Kept after a call: a later callback answers again, and the caller takes only the first.
    Handler handler_;
    bool awaitingFix_ = false;
};

}  // namespace lunoval
