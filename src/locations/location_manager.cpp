#include "locations/location_manager.hpp"

#include <algorithm>
#include <cmath>

#include "locations/legacy_location_list.hpp"
#include "locations/widget_location_cache.hpp"
#include "locations/widget_reloader.hpp"
#include "platform/log.hpp"
#include "platform/number_text.hpp"

namespace lunoval {

namespace {

constexpr const char* kCurrentLocationName = "Current Location";
constexpr const char* kLocationsKey = "locations";
constexpr const char* kSelectedIndexKey = "selectedIndex";
constexpr double kStaleAfterSeconds = 60;
constexpr double kUnknownAccuracy = 9999.0;
constexpr double kPoorAccuracy = 300.0;
constexpr double kDistanceFilterMeters = 10.0;

GeoLocationData newCurrentLocation() {
    return GeoLocationData{.name = kCurrentLocationName};
}

// The device zone's name and offset now, as a fix records them.
std::pair<std::string, std::int64_t> zoneNow(const LocationManagerServices& services) {
    const auto& zone = services.deviceZone;
    const auto offset = zone.offsetFromUTC(services.clock()).value_or(std::chrono::seconds{0});
    return {zone.identifier(), offset.count()};
}

std::optional<double> numberIn(const PropertyValue& dictionary, const char* key) {
    const auto item = dictionary.find(key);
    if (item == dictionary.end() || !item->is_number()) return std::nullopt;
    return item->get<double>();
}

std::string stringIn(const PropertyValue& dictionary, const char* key) {
    const auto item = dictionary.find(key);
    return item != dictionary.end() && item->is_string() ? item->get<std::string>() : "";
}

std::optional<std::string> offTheGlobe(double latitude, double longitude) {
    if (std::fabs(latitude) <= 90 && std::fabs(longitude) <= 180) return std::nullopt;
    return "latitude " + doubleDescription(latitude) + ", longitude " +
           doubleDescription(longitude) + " is off the globe";
}

// Why a stored entry is no place, absent when it is one.
std::optional<std::string> savedEntryProblem(const PropertyValue& saved) {
    if (!saved.is_object()) return "it is not a dictionary";
    const auto latitude = numberIn(saved, "latitude");
    const auto longitude = numberIn(saved, "longitude");
    if (!latitude || !longitude) return "its latitude or longitude is not a number";
    if (auto problem = offTheGlobe(*latitude, *longitude)) return problem;
    // Deliberately: such a place counts as never set.
    if (*latitude == 0 || *longitude == 0) return "it lies on the equator or the prime meridian";
    return std::nullopt;
}

std::optional<std::string> legacyLineProblem(const LegacyLocationLine& line) {
    if (auto problem = offTheGlobe(line.latitude, line.longitude)) return problem;
    if (!TimeZone::named(line.timezoneId)) return "unknown time zone '" + line.timezoneId + "'";
    return std::nullopt;
}

// A selection is a whole number below the count, stored as an integer or a real number.
std::optional<std::size_t> selectionIn(const std::optional<PropertyValue>& stored,
                                       std::size_t count) {
    if (!stored || !stored->is_number()) return std::nullopt;
    const double index = stored->get<double>();
    if (!(index >= 0 && index < static_cast<double>(count)) || index != std::floor(index)) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(index);
}

}  // namespace

LocationManager::LocationManager(LocationManagerServices services)
    : services_(std::move(services)), locationList_{newCurrentLocation()} {}

LocationManager::~LocationManager() {
    if (clLocationManager_) clLocationManager_->setDelegate(nullptr);
}

void LocationManager::SubscribeToNotification(LocationObserver* observer) {
    notifyDelegates_.push_back(observer);
    if (isUpdating_) NotifyLocationSettingChange(LocationNotification::beginUpdate);
}

void LocationManager::UnsubscribeToNotification(LocationObserver* observer) {
    std::erase(notifyDelegates_, observer);
}

void LocationManager::NotifyLocationSettingChange(LocationNotification code) {
    // An observer may unsubscribe while being told.
    const auto observers = notifyDelegates_;
    for (auto* observer : observers) {
        switch (code) {
            case LocationNotification::beginUpdate:
                observer->BeginLocationUpdate();
                break;
            case LocationNotification::updated:
                observer->LocationUpdated(!isUpdating_);
                break;
            case LocationNotification::updateFailed:
                observer->LocationUpdateFailed();
                break;
            case LocationNotification::permissionDenied:
                observer->LocationServicesPermissionDenied();
                break;
        }
    }
}

void LocationManager::ChangeSelectedLocation(std::size_t index) {
    previousSelectionIndex_ = selectedIndex_;
    if (index == 0) {
        UpdateUserCurrentLocation();
        return;
    }
    selectedIndex_ = index;
    StopUpdatingCurrentLocation();
    NotifyLocationSettingChange(LocationNotification::updated);
    saveSelectedLocationToSharedPrefs();
}

void LocationManager::saveSelectedLocationToSharedPrefs() const {
    services_.sharedDefaults.setInteger(kSelectedIndexKey,
                                        static_cast<std::int64_t>(selectedIndex_));
}

std::optional<GeoLocationData> LocationManager::GetSelectedLocation() {
    if (selectedIndex_ >= locationList_.size()) return std::nullopt;
    if (selectedIndex_ == 0 && !userCurrentLocation().locationInitialized) {
        UpdateUserCurrentLocation();
    }
    return locationList_[selectedIndex_];
}

std::optional<std::string> LocationManager::GetLocationNameAtIndex(std::size_t index) const {
    if (index >= locationList_.size()) return std::nullopt;
    return locationList_[index].name;
}

std::optional<GeoLocationData> LocationManager::GetLocationDataAtIndex(std::size_t index) const {
    if (index >= locationList_.size()) return std::nullopt;
    return locationList_[index];
}

std::size_t LocationManager::AddToLocationList(GeoLocationData place) {
    const auto same = std::find_if(locationList_.begin() + 1, locationList_.end(),
                                   [&](const auto& saved) { return saved.name == place.name; });
    if (same != locationList_.end()) {
        *same = std::move(place);
        return static_cast<std::size_t>(same - locationList_.begin());
    }
    locationList_.push_back(std::move(place));
    saveToSharedContainerFile();
    return locationList_.size() - 1;
}

void LocationManager::RemoveFromLocationList(std::size_t index) {
    if (index >= 1 && index < locationList_.size()) {
        locationList_.erase(locationList_.begin() + static_cast<std::ptrdiff_t>(index));
        if (index == selectedIndex_) selectedIndex_ = 0;
    }
    saveToSharedContainerFile();
}

void LocationManager::RearrangeItem(std::size_t from, std::size_t to) {
    const auto count = locationList_.size();
    if (from < 1 || from >= count || to < 1 || to >= count) return;
    auto item = std::move(locationList_[from]);
    locationList_.erase(locationList_.begin() + static_cast<std::ptrdiff_t>(from));
    locationList_.insert(locationList_.begin() + static_cast<std::ptrdiff_t>(to), std::move(item));
    // The selection follows the record it named.
    if (selectedIndex_ == from) {
        selectedIndex_ = to;
    } else if (from < selectedIndex_ && selectedIndex_ <= to) {
        --selectedIndex_;
    } else if (to <= selectedIndex_ && selectedIndex_ < from) {
        ++selectedIndex_;
    }
}

void LocationManager::saveToSharedContainerFile() const {
    auto locations = PropertyValue::array();
    for (auto place = locationList_.begin() + 1; place != locationList_.end(); ++place) {
        locations.push_back({{"latitude", place->latitude},
                             {"longitude", place->longitude},
                             {"timezoneId", place->timezoneId},
                             {"location_name", place->name}});
    }
    services_.sharedDefaults.setObjects(
        {{kLocationsKey, std::move(locations)},
         {kSelectedIndexKey, static_cast<std::int64_t>(selectedIndex_)}});
}

void LocationManager::loadFromSharedContainerFile() {
    if (hasLoadedSharedContainerPrefs_) return;
    hasLoadedSharedContainerPrefs_ = true;
    const auto& defaults = services_.sharedDefaults;
    const auto locations = defaults.objectForKey(kLocationsKey);
    if (locations && !locations->is_array()) {
        // Shown, not stored: what the user keeps there is theirs to mend.
        log::warning("\"" + std::string(kLocationsKey) + "\" in " + defaults.file().string() +
                     " is not a list; showing the places without it and keeping it as it is");
        LoadLocationListFromDisk();
        return;
    }
    if (!locations || locations->empty()) {
        LoadLocationListFromDisk();
        saveToSharedContainerFile();
        return;
    }
    locationList_.erase(locationList_.begin() + 1, locationList_.end());
    for (std::size_t entry = 0; entry < locations->size(); ++entry) {
        const auto& saved = (*locations)[entry];
        if (const auto problem = savedEntryProblem(saved)) {
            log::warning("skipped entry " + std::to_string(entry + 1) + " of \"" + kLocationsKey +
                         "\" in " + defaults.file().string() + ": " + *problem);
            continue;
        }
        GeoLocationData place;
        place.SetLocation({*numberIn(saved, "latitude"), *numberIn(saved, "longitude")},
                          stringIn(saved, "location_name"), stringIn(saved, "timezoneId"), 0,
                          false);
        locationList_.push_back(std::move(place));
    }
    if (const auto selected = selectionIn(defaults.objectForKey(kSelectedIndexKey), Count())) {
        selectedIndex_ = *selected;
    }
}

void LocationManager::LoadLocationListFromDisk() {
    const auto& file = services_.legacyListFile;
    const auto lines = readLegacyLocationFile(file);
    if (!lines) {
        GeoLocationData sanFrancisco;
        // The list has always stored 1 as this default's offset.
        sanFrancisco.SetLocation({37.7749, -122.4194}, "San Francisco, CA", "America/Los_Angeles",
                                 1, false);
        locationList_.push_back(std::move(sanFrancisco));
        return;
    }
    locationList_.erase(locationList_.begin() + 1, locationList_.end());
    for (std::size_t i = 0; i < lines->size(); ++i) {
        const auto line = parseLegacyLocationLine((*lines)[i]);
        if (!line) {
            log::warning("skipped line " + std::to_string(i + 1) + " of " + file.string() +
                         ": not LAT$$LNG$$NAME$$ZONE$$GMT");
            continue;
        }
        if (i == 0) {
            currentLocation().setLatitude(line->latitude);
            currentLocation().setLongitude(line->longitude);
            std::tie(currentLocation().timezoneId, currentLocation().gmtOffset) =
                zoneNow(services_);
            continue;
        }
        // Taken over, such a place would be dropped by a later load or fail every lookup.
        if (const auto problem = legacyLineProblem(*line)) {
            log::warning("skipped \"" + line->name + "\" (line " + std::to_string(i + 1) + " of " +
                         file.string() + "): " + *problem);
            continue;
        }
        GeoLocationData place;
        place.SetLocation({line->latitude, line->longitude}, line->name, line->timezoneId,
                          line->gmtOffset, false);
        locationList_.push_back(std::move(place));
    }
}

void LocationManager::SetOptions(double desiredAccuracy, int maxTries, double useTimeout) {
    desiredAccuracy_ = desiredAccuracy;
    maxNumberOfNotification_ = maxTries;
    useTimeout_ = useTimeout;
}

void LocationManager::UpdateUserCurrentLocation() {
    if (!clLocationManager_) {
        clLocationManager_ = services_.makePlatformManager();
        clLocationManager_->setDelegate(this);
        clLocationManager_->desiredAccuracy = kBestAccuracy;
        clLocationManager_->distanceFilter = kDistanceFilterMeters;
    }
    if (clLocationManager_->authorizationStatus() == AuthorizationStatus::notDetermined) {
        isUpdating_ = true;
        clLocationManager_->requestWhenInUseAuthorization();
        return;
    }
    beginLoadingUserLocation();
}

void LocationManager::beginLoadingUserLocation() {
    isUpdating_ = true;
    notifyCount_ = 0;
    NotifyLocationSettingChange(LocationNotification::beginUpdate);
    clLocationManager_->startUpdatingLocation();
    if (useTimeout_ != 0) {
        currentAccuracy_ = kUnknownAccuracy;
        lastUpdateTime_ = services_.clock();
        services_.mainQueue->asyncAfter(updateTimerSeconds_, [this] { handleTimer(); });
    }
}

void LocationManager::StopUpdatingCurrentLocation() {
    if (!isUpdating_) return;
    isUpdating_ = false;
    stopPlatformUpdates();
}

void LocationManager::stopPlatformUpdates() {
    if (clLocationManager_) clLocationManager_->stopUpdatingLocation();
}

void LocationManager::didChangeAuthorization(AuthorizationStatus status) {
    switch (status) {
        // Restricted counts as granted here, as it always has.
        case AuthorizationStatus::restricted:
        case AuthorizationStatus::authorizedAlways:
        case AuthorizationStatus::authorizedWhenInUse:
            if (isUpdating_) beginLoadingUserLocation();
            return;
        case AuthorizationStatus::denied:
            isUpdating_ = false;
            NotifyLocationSettingChange(LocationNotification::permissionDenied);
            stopPlatformUpdates();
            return;
        case AuthorizationStatus::notDetermined:
            return;
    }
}

void LocationManager::didUpdateLocations(const std::vector<Location>& locations) {
    if (!locations.empty()) updateWithNewLocation(locations.back());
}

bool LocationManager::updateIsStale() const {
    if (useTimeout_ == 0 || !lastUpdateTime_) return false;
    const double elapsed =
        services_.clock().timeIntervalSince1970() - lastUpdateTime_->timeIntervalSince1970();
    return std::floor(elapsed) > kStaleAfterSeconds;
}

void LocationManager::updateWithNewLocation(const Location& fix) {
    ++notifyCount_;
    if (!startingPoint_) startingPoint_ = fix;
    selectedIndex_ = 0;
    const auto [zone, offset] = zoneNow(services_);
    currentLocation().SetLocation({fix.latitude, fix.longitude}, kCurrentLocationName, zone, offset,
                                  false);
    widgetcache::saveLocationToCache(services_.sharedDefaults, fix, services_.clock());
    currentAccuracy_ = fix.horizontalAccuracy;
    const bool stale = updateIsStale();
    const bool accurate = currentAccuracy_ > 0 && currentAccuracy_ < desiredAccuracy_;
    const bool done = notifyCount_ >= maxNumberOfNotification_ ||
                      (currentAccuracy_ <= 0 && stale) ||
                      (currentAccuracy_ > 0 && (accurate || stale));
    if (done) {
        isUpdating_ = false;
        stopPlatformUpdates();
        WidgetReloader::reloadAllTimelines();
    }
    NotifyLocationSettingChange(LocationNotification::updated);
}

void LocationManager::handleTimer() {
    if (!isUpdating_) return;
    stopPlatformUpdates();
    currentLocation().locationInitialized = true;
    isUpdating_ = false;
    notifyCount_ = 0;
    if (currentAccuracy_ > kPoorAccuracy) {
        NotifyLocationSettingChange(LocationNotification::updateFailed);
    }
}

void LocationManager::didFailWithError(const LocationError& error) {
    if (error.domain != kLocationErrorDomain) return;
    if (error.code == LocationError::denied) {
        stopPlatformUpdates();
        currentLocation().setLatitude(0);
        currentLocation().setLongitude(0);
        currentLocation().locationInitialized = true;
        isUpdating_ = false;
        notifyCount_ = 0;
        if (currentAccuracy_ > kPoorAccuracy) {
            NotifyLocationSettingChange(LocationNotification::permissionDenied);
        }
        currentAccuracy_ = kUnknownAccuracy;
    } else {
        NotifyLocationSettingChange(LocationNotification::updateFailed);
    }
    services_.mainQueue->async([this] { revertToOtherLocation(); });
}

void LocationManager::revertToOtherLocation() {
    if (locationList_.empty() || selectedIndex_ != 0) return;
    // With one entry this selects one that does not exist, as it always has.
    selectedIndex_ = previousSelectionIndex_ < locationList_.size() ? previousSelectionIndex_ : 1;
    NotifyLocationSettingChange(LocationNotification::updated);
}

}  // namespace lunoval
