#include "locations/location_manager.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include "temp_folder.hpp"

#include "platform/files.hpp"
#include "platform/widget_center.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);  // 2025-10-09, summer time

// Location services whose answers the test gives by hand.
class ScriptedServices : public PlatformLocationManager {
  public:
    explicit ScriptedServices(AuthorizationStatus status) : status(status) {}

    [[nodiscard]] AuthorizationStatus authorizationStatus() const override { return status; }
    [[nodiscard]] bool isAuthorizedForWidgetUpdates() const override { return true; }
    [[nodiscard]] std::optional<Location> location() const override { return std::nullopt; }
    void requestLocation() override {}
    void startUpdatingLocation() override { ++starts; }
    void stopUpdatingLocation() override { ++stops; }
    void requestWhenInUseAuthorization() override { ++authorizationRequests; }

    void deliver(double accuracy) { delegate()->didUpdateLocations({{48.8566, 2.3522, accuracy}}); }
    void fail(int code, std::string domain = std::string(kLocationErrorDomain)) {
        delegate()->didFailWithError({"failed", std::move(domain), code});
    }
    void answerAuthorization(AuthorizationStatus answer) {
        status = answer;
        delegate()->didChangeAuthorization(answer);
    }

    AuthorizationStatus status;
    int starts = 0;
    int stops = 0;
    int authorizationRequests = 0;
};

// Every message as "0" to "3", the update message with its argument.
struct Recorder : LocationObserver {
    void BeginLocationUpdate() override { messages += "0 "; }
    void LocationUpdated(bool notUpdating) override {
        messages += notUpdating ? "1:true " : "1:false ";
    }
    void LocationUpdateFailed() override { messages += "2 "; }
    void LocationServicesPermissionDenied() override { messages += "3 "; }
    std::string messages;
};

class SavedPlaces : public ::testing::Test {
  protected:
    SavedPlaces() { ::setenv("XDG_RUNTIME_DIR", temp_.path().c_str(), 1); }
    ~SavedPlaces() override { ::unsetenv("XDG_RUNTIME_DIR"); }

    // A manager over this test's files, observed by `recorder`.
    LocationManager& manager(AuthorizationStatus status = AuthorizationStatus::authorizedAlways) {
        manager_ = std::make_unique<LocationManager>(LocationManagerServices{
            .sharedDefaults = defaults_,
            .legacyListFile = legacyFile_,
            .mainQueue = &queue_,
            .makePlatformManager =
                [this, status] {
                    auto made = std::make_unique<ScriptedServices>(status);
                    services_ = made.get();
                    return made;
                },
            .clock = queue_.clock(),
            .deviceZone = *TimeZone::named("Europe/Paris"),
        });
        manager_->SubscribeToNotification(&recorder_);
        return *manager_;
    }

    // A loaded manager with saved places named by the letters of `names`, `selected` chosen.
    LocationManager& managerWith(const std::string& names, std::int64_t selected) {
        auto locations = PropertyValue::array();
        for (std::size_t i = 0; i < names.size(); ++i) {
            locations.push_back({{"latitude", 10.0 + static_cast<double>(i)},
                                 {"longitude", 20.0},
                                 {"timezoneId", "Europe/Paris"},
                                 {"location_name", std::string(1, names[i])}});
        }
        defaults_.setObjects({{"locations", locations}, {"selectedIndex", selected}});
        auto& loaded = manager();
        loaded.loadFromSharedContainerFile();
        return loaded;
    }

    static std::string names(const LocationManager& list) {
        std::string letters;
        for (std::size_t i = 1; i < list.Count(); ++i) letters += *list.GetLocationNameAtIndex(i);
        return letters;
    }

    void writeLegacyList(const std::string& xml) const {
        std::ofstream(legacyFile_)
            << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            << "<plist version=\"1.0\"><array>" << xml << "</array></plist>\n";
    }

    testing::TempFolder temp_{"lunoval-places"};
    UserDefaults defaults_{temp_.path() / "group.plist"};
    fs::path legacyFile_ = temp_.path() / "locations.plist";
    ManualQueue queue_{kStart};
    ScriptedServices* services_ = nullptr;
    Recorder recorder_;
    std::unique_ptr<LocationManager> manager_;
};

TEST_F(SavedPlaces, EditsKeepTheirSelectionRules) {
    enum class Edit { remove, rearrange };
    struct Case {
        Edit edit;
        std::size_t from, to;
        std::int64_t selected;
        const char* names;
        std::size_t selectedAfter;
        bool saves;
    };
    const std::vector<Case> cases{
        {Edit::remove, 2, 0, 2, "ACD", 0, true},   // the selected place: back to the device
        {Edit::remove, 1, 0, 3, "BCD", 3, true},   // one before it: the selection slides on
        {Edit::remove, 0, 0, 2, "ABCD", 2, true},  // the device entry stays, yet it saves
        {Edit::remove, 5, 0, 2, "ABCD", 2, true},  // beyond the list
        {Edit::rearrange, 1, 3, 1, "BCAD", 3, false}, {Edit::rearrange, 1, 3, 2, "BCAD", 1, false},
        {Edit::rearrange, 4, 2, 3, "ADBC", 4, false}, {Edit::rearrange, 4, 2, 1, "ADBC", 1, false},
        {Edit::rearrange, 0, 2, 1, "ABCD", 1, false}, {Edit::rearrange, 1, 5, 1, "ABCD", 1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.edit == Edit::remove ? "remove " : "move ") +
                     std::to_string(c.from) + " " + std::to_string(c.to));
        auto& list = managerWith("ABCD", c.selected);
        fs::remove(defaults_.file());
        if (c.edit == Edit::remove) {
            list.RemoveFromLocationList(c.from);
        } else {
            list.RearrangeItem(c.from, c.to);
        }
        EXPECT_EQ(names(list), c.names);
        EXPECT_EQ(list.GetSelectedLocationIndex(), c.selectedAfter);
        EXPECT_EQ(fs::exists(defaults_.file()), c.saves);
    }
}

TEST_F(SavedPlaces, AddingASavedNameReplacesItWhereItStandsWithoutSaving) {
    auto& list = managerWith("AB", 0);
    GeoLocationData place;
    place.SetLocation({1, 2}, "A", "Asia/Tokyo", 32400, false);
    fs::remove(defaults_.file());
    EXPECT_EQ(list.AddToLocationList(place), 1U);
    EXPECT_EQ(list.GetLocationDataAtIndex(1)->timezoneId, "Asia/Tokyo");
    EXPECT_FALSE(fs::exists(defaults_.file()));

    place.name = "C";
    EXPECT_EQ(list.AddToLocationList(place), 3U);
    const auto saved = defaults_.objectForKey("locations");
    ASSERT_TRUE(saved && saved->size() == 3);
    EXPECT_EQ((*saved)[2]["location_name"], "C");
    EXPECT_EQ((*saved)[0]["timezoneId"], "Asia/Tokyo");
}

TEST_F(SavedPlaces, LoadingSkipsUnsetPlacesAndASelectionBeyondTheListWithAWordEach) {
    const auto place = [](double latitude, double longitude, const char* name) {
        return PropertyValue{{"latitude", latitude},
                             {"longitude", longitude},
                             {"timezoneId", "UTC"},
                             {"location_name", name}};
    };
    defaults_.setObjects(
        {{"locations",
          {place(0, 5, "equator"),
           place(5, 0, "meridian"),
           place(std::nan(""), 5, "damaged"),
           place(5, 1e300, "off the globe"),
           "Quito",
           {{"latitude", "-0.18"}, {"longitude", -78.47}, {"location_name", "text"}},
           place(-33.87, 151.21, "Sydney")}},
         {"selectedIndex", 2}});
    ::testing::internal::CaptureStderr();
    auto& list = manager();
    list.loadFromSharedContainerFile();
    const auto said = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 6) << said;
    EXPECT_EQ(list.Count(), 2U);
    EXPECT_EQ(list.GetLocationDataAtIndex(1)->name, "Sydney");
    EXPECT_EQ(list.GetSelectedLocationIndex(), 0U);

    defaults_.setInteger("selectedIndex", 1);
    list.loadFromSharedContainerFile();  // once per manager
    EXPECT_EQ(list.GetSelectedLocationIndex(), 0U);
}

TEST_F(SavedPlaces, LoadingReadsWhatTheStoredValuesSayAndNeverWritesThem) {
    struct Case {
        PropertyValue locations, selectedIndex;
        const char* names;
        std::size_t selected;
    };
    const PropertyValue places = {
        {{"latitude", 10}, {"longitude", 20.5}, {"timezoneId", "UTC"}, {"location_name", "A"}},
        {{"latitude", 11.5}, {"longitude", 21.5}, {"timezoneId", "UTC"}, {"location_name", "B"}}};
    const std::vector<Case> cases{
        {places, 2.0, "AB", 2},  // a whole number stored as a real one
        {places, 1.5, "AB", 0},
        {places, -1.0, "AB", 0},
        {places, "1", "AB", 0},
        {"Quito", 1, "San Francisco, CA", 0},  // not a list: shown, but not stored
        {{{"location_name", "Quito"}}, 1, "San Francisco, CA", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.locations.dump() + " " + c.selectedIndex.dump());
        defaults_.setObjects({{"locations", c.locations}, {"selectedIndex", c.selectedIndex}});
        const auto before = readWholeFile(defaults_.file());
        auto& list = manager();
        list.loadFromSharedContainerFile();
        EXPECT_EQ(names(list), c.names);
        EXPECT_EQ(list.GetSelectedLocationIndex(), c.selected);
        EXPECT_EQ(readWholeFile(defaults_.file()), before);
    }
}

TEST_F(SavedPlaces, MigratesTheLegacyListFileOnce) {
    writeLegacyList(
        "<string>51.5$$-0.12$$Here$$Europe/London$$0</string>"
        "<string>35.68$$139.69$$Tokyo$$Asia/Tokyo$$32400</string>"
        "<string>not enough$$fields</string>"
        "<string>91.0$$181.0$$Off the globe$$UTC$$0</string>"
        "<string>nan$$10$$Damaged$$UTC$$0</string>"
        "<string>10$$10$$Nowhere$$../../etc/passwd$$0</string>"
        "<string>-33.87$$151.21$$Sydney$$Australia/Sydney$$36000</string>");
    ::testing::internal::CaptureStderr();
    auto& list = manager();
    list.loadFromSharedContainerFile();
    const auto said = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 4) << said;
    EXPECT_NE(said.find("../../etc/passwd"), std::string::npos);
    const auto& device = list.userCurrentLocation();
    EXPECT_EQ(device.name, "Current Location");
    EXPECT_EQ(device.latitude, 51.5);
    EXPECT_EQ(device.longitude, -0.12);
    EXPECT_EQ(device.timezoneId, "Europe/Paris");  // the device's zone, not the file's
    EXPECT_EQ(device.gmtOffset, 7200);
    EXPECT_FALSE(device.locationInitialized);
    ASSERT_EQ(names(list), "TokyoSydney");
    EXPECT_EQ(list.GetLocationDataAtIndex(1)->gmtOffset, 32400);

    const auto saved = defaults_.objectForKey("locations");
    ASSERT_TRUE(saved && saved->size() == 2);
    EXPECT_EQ((*saved)[1], (PropertyValue{{"latitude", -33.87},
                                          {"longitude", 151.21},
                                          {"timezoneId", "Australia/Sydney"},
                                          {"location_name", "Sydney"}}));
}

TEST_F(SavedPlaces, WithoutALegacyListTheDefaultPlaceIsSanFrancisco) {
    for (const char* legacy : {"", "<integer>3</integer>"}) {
        if (*legacy != '\0') writeLegacyList(legacy);
        auto& list = manager();
        list.loadFromSharedContainerFile();
        ASSERT_EQ(list.Count(), 2U);
        const auto place = *list.GetLocationDataAtIndex(1);
        EXPECT_EQ(place.name, "San Francisco, CA");
        EXPECT_EQ(place.latitude, 37.7749);
        EXPECT_EQ(place.longitude, -122.4194);
        EXPECT_EQ(place.timezoneId, "America/Los_Angeles");
        EXPECT_EQ(place.gmtOffset, 1);
        EXPECT_EQ(defaults_.objectForKey("locations")->size(), 1U);
        fs::remove(defaults_.file());
    }
}

TEST_F(SavedPlaces, AFixEndsTheUpdateWritesTheWidgetCacheAndAsksForAReload) {
    widgetkit::ReloadListener host;
    auto& list = managerWith("AB", 2);
    list.UpdateUserCurrentLocation();
    EXPECT_TRUE(list.isUpdatingCurrentLocation());
    services_->deliver(5);
    EXPECT_EQ(recorder_.messages, "0 1:true ");
    EXPECT_FALSE(list.isUpdatingCurrentLocation());
    EXPECT_EQ(services_->stops, 1);
    EXPECT_EQ(list.GetSelectedLocationIndex(), 0U);
    const auto& device = list.userCurrentLocation();
    EXPECT_TRUE(device.locationInitialized);
    EXPECT_EQ(device.latitude, 48.8566);
    EXPECT_EQ(device.timezoneId, "Europe/Paris");
    EXPECT_EQ(defaults_.doubleForKey("WidgetLastLocationLat"), 48.8566);
    EXPECT_EQ(defaults_.doubleForKey("WidgetLastLocationLng"), 2.3522);
    EXPECT_EQ(defaults_.doubleForKey("WidgetLastLocationTimestamp"),
              kStart.timeIntervalSince1970());
    EXPECT_TRUE(host.drain());
    EXPECT_EQ(defaults_.integerForKey("selectedIndex"), 2);  // the device selection is not saved

    queue_.advance(300);  // the update's timer finds it over
    EXPECT_EQ(recorder_.messages, "0 1:true ");
}

TEST_F(SavedPlaces, MoreTriesStopAtAnAccurateOrAStaleFix) {
    struct Case {
        double accuracy;
        double secondsLater;
        bool stops;
    };
    const std::vector<Case> cases{
        {500, 0, false},    {50, 0, true}, {500, 61, true},
        {500, 60.9, false}, {0, 61, true}, {0, 0, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.accuracy) + " after " + std::to_string(c.secondsLater));
        auto& list = manager();
        list.SetOptions(100, 3, 1.0);
        list.UpdateUserCurrentLocation();
        queue_.advance(c.secondsLater);
        services_->deliver(c.accuracy);
        EXPECT_EQ(list.isUpdatingCurrentLocation(), !c.stops);
    }
}

TEST_F(SavedPlaces, AnAnswerToTheAuthorizationRequestStartsOrEndsTheUpdate) {
    struct Case {
        AuthorizationStatus answer;
        const char* messages;
        int starts;
        bool updating;
    };
    const std::vector<Case> cases{
        {AuthorizationStatus::authorizedWhenInUse, "0 ", 1, true},
        {AuthorizationStatus::restricted, "0 ", 1, true},
        {AuthorizationStatus::denied, "3 ", 0, false},
        {AuthorizationStatus::notDetermined, "", 0, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.answer));
        recorder_.messages.clear();
        auto& list = manager(AuthorizationStatus::notDetermined);
        list.UpdateUserCurrentLocation();
        EXPECT_EQ(services_->authorizationRequests, 1);
        EXPECT_EQ(services_->starts, 0);
        services_->answerAuthorization(c.answer);
        EXPECT_EQ(recorder_.messages, c.messages);
        EXPECT_EQ(services_->starts, c.starts);
        EXPECT_EQ(list.isUpdatingCurrentLocation(), c.updating);
    }
}

TEST_F(SavedPlaces, ADeniedUpdateLeavesTheDeviceAtZeroAndRevertsTheSelection) {
    auto& list = managerWith("AB", 2);
    list.ChangeSelectedLocation(0);
    services_->fail(LocationError::denied);
    const auto& device = list.userCurrentLocation();
    EXPECT_TRUE(device.locationInitialized);
    EXPECT_EQ(device.latitude, 0);
    EXPECT_EQ(device.longitude, 0);
    EXPECT_FALSE(list.isUpdatingCurrentLocation());
    EXPECT_EQ(list.GetSelectedLocationIndex(), 2U);  // never left it: no fix came
    queue_.runDue();
    EXPECT_EQ(recorder_.messages, "0 3 ");
}

TEST_F(SavedPlaces, RevertingWithOnlyTheDeviceSelectsAnEntryThatDoesNotExist) {
    defaults_.setObjects({{"locations", {{{"latitude", 0.0}, {"longitude", 0.0}}}}});
    auto& list = manager();
    list.loadFromSharedContainerFile();
    ASSERT_EQ(list.Count(), 1U);
    list.ChangeSelectedLocation(2);  // previous selection 0, then 2; out of range
    list.ChangeSelectedLocation(0);  // previous selection 2
    services_->deliver(5);
    services_->fail(LocationError::locationUnknown);
    queue_.runDue();
    EXPECT_EQ(list.GetSelectedLocationIndex(), 1U);
    EXPECT_FALSE(list.GetSelectedLocation());
}

TEST_F(SavedPlaces, AFailedUpdateRunsOnUntilItsTimer) {
    auto& list = manager();
    list.UpdateUserCurrentLocation();
    services_->fail(LocationError::denied, "NetworkErrorDomain");  // not location services'
    services_->fail(LocationError::locationUnknown);
    queue_.runDue();
    EXPECT_TRUE(list.isUpdatingCurrentLocation());
    EXPECT_FALSE(list.userCurrentLocation().locationInitialized);
    queue_.advance(299);
    EXPECT_TRUE(list.isUpdatingCurrentLocation());
    queue_.advance(1);
    EXPECT_FALSE(list.isUpdatingCurrentLocation());
    EXPECT_TRUE(list.userCurrentLocation().locationInitialized);
    EXPECT_EQ(recorder_.messages, "0 2 1:false 2 ");
}

TEST_F(SavedPlaces, ObserversHearInOrderAndLateOnesLearnOfARunningUpdate) {
    auto& list = manager();
    list.UpdateUserCurrentLocation();
    Recorder late;
    list.SubscribeToNotification(&late);
    EXPECT_EQ(recorder_.messages, "0 0 ");
    EXPECT_EQ(late.messages, "0 ");
    list.UnsubscribeToNotification(&recorder_);
    list.ChangeSelectedLocation(3);
    EXPECT_EQ(late.messages, "0 1:true ");
    EXPECT_EQ(recorder_.messages, "0 0 ");
    EXPECT_EQ(defaults_.integerForKey("selectedIndex"), 3);
    EXPECT_FALSE(list.GetSelectedLocation());
}

}  // namespace
}  // namespace lunoval
