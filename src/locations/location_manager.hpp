#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "locations/geo_location_data.hpp"
#include "platform/clock.hpp"
#include "platform/location_services.hpp"
#include "platform/main_queue.hpp"
#include "platform/time_zone.hpp"
#include "platform/user_defaults.hpp"

namespace lunoval {

// How long an update looks for a fix unless told otherwise.
inline constexpr double kUpdateTimerSeconds = 300.0;

// Told of each stage of a device-location update, in the order observers subscribed.
class LocationObserver {
  public:
    virtual ~LocationObserver() = default;
    virtual void BeginLocationUpdate() = 0;
    virtual void LocationUpdated(bool notUpdating) = 0;
    virtual void LocationUpdateFailed() = 0;
    virtual void LocationServicesPermissionDenied() = 0;
};

enum class LocationNotification {
    beginUpdate = 0,
    updated = 1,
    updateFailed = 2,
    permissionDenied = 3,
};

// What the manager reaches outside itself.
struct LocationManagerServices {
    UserDefaults sharedDefaults;
    std::filesystem::path legacyListFile;
    MainQueue* mainQueue = nullptr;
    std::function<std::unique_ptr<PlatformLocationManager>()> makePlatformManager;
    Clock clock;
    // The zone a fix is recorded in.
    TimeZone deviceZone = TimeZone::utc();
};

// The host app's list of places, shared with it through the app group: entry 0 is the device's
// own position, the others are places the user saved. Runs on the main queue only.
class LocationManager : public PlatformLocationDelegate {
  public:
    explicit LocationManager(LocationManagerServices services);
    ~LocationManager() override;
    LocationManager(const LocationManager&) = delete;
    LocationManager& operator=(const LocationManager&) = delete;

    // Observers are not owned; they must unsubscribe before they go.
    void SubscribeToNotification(LocationObserver* observer);
    void UnsubscribeToNotification(LocationObserver* observer);
    void NotifyLocationSettingChange(LocationNotification code);

    void ChangeSelectedLocation(std::size_t index);
    void saveSelectedLocationToSharedPrefs() const;
    [[nodiscard]] std::size_t GetSelectedLocationIndex() const { return selectedIndex_; }
    [[nodiscard]] bool AutoDetectLocation() const { return selectedIndex_ == 0; }
    [[nodiscard]] std::size_t Count() const { return locationList_.size(); }
    [[nodiscard]] bool isUpdatingCurrentLocation() const { return isUpdating_; }
    // Absent when the selection is out of range; starts an update when it follows a device
    // that has no position yet.
    std::optional<GeoLocationData> GetSelectedLocation();
    [[nodiscard]] std::optional<std::string> GetLocationNameAtIndex(std::size_t index) const;
    [[nodiscard]] std::optional<GeoLocationData> GetLocationDataAtIndex(std::size_t index) const;
    [[nodiscard]] const GeoLocationData& userCurrentLocation() const { return locationList_[0]; }
    // The first fix this manager received.
    [[nodiscard]] const std::optional<Location>& startingPoint() const { return startingPoint_; }

    // A saved place of the same name is replaced where it stands, without saving.
    std::size_t AddToLocationList(GeoLocationData place);
    void RemoveFromLocationList(std::size_t index);
    // Does not save.
    void RearrangeItem(std::size_t from, std::size_t to);
    void saveToSharedContainerFile() const;
    // Once per manager.
    void loadFromSharedContainerFile();
    void LoadLocationListFromDisk();

    void SetOptions(double desiredAccuracy, int maxTries, double useTimeout);
    void UpdateUserCurrentLocation();
    // How long an update looks for a fix before it settles for what it has.
    void SetUpdateTimer(double seconds) { updateTimerSeconds_ = seconds; }
    void StopUpdatingCurrentLocation();

    void didUpdateLocations(const std::vector<Location>& locations) override;
    void didFailWithError(const LocationError& error) override;
    void didChangeAuthorization(AuthorizationStatus status) override;

  private:
    GeoLocationData& currentLocation() { return locationList_[0]; }
    void beginLoadingUserLocation();
    void updateWithNewLocation(const Location& fix);
    [[nodiscard]] bool updateIsStale() const;
    void handleTimer();
    void revertToOtherLocation();
    void stopPlatformUpdates();

    LocationManagerServices services_;
    std::vector<GeoLocationData> locationList_;
    std::size_t selectedIndex_ = 0;
    std::unique_ptr<PlatformLocationManager> clLocationManager_;
    std::optional<Location> startingPoint_;
    std::vector<LocationObserver*> notifyDelegates_;
    int maxNumberOfNotification_ = 1;
    int notifyCount_ = 0;
    double desiredAccuracy_ = kBestAccuracy;
    double currentAccuracy_ = 0;
    double useTimeout_ = 1.0;
    double updateTimerSeconds_ = kUpdateTimerSeconds;
    bool isUpdating_ = false;
    std::optional<Date> lastUpdateTime_;
    bool hasLoadedSharedContainerPrefs_ = false;
    std::size_t previousSelectionIndex_ = 0;
};

}  // namespace lunoval
