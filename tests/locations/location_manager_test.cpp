#include "locations/location_manager.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <tuple>
#include "temp_folder.hpp"

#include "platform/files.hpp"
#include "platform/widget_center.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);  // 2025-10-09, summer time

// Records every message as "0" to "3", the update message with its argument.
class SavedPlaces : public ::testing::Test, public LocationObserver {
  protected:
    SavedPlaces() { ::setenv("XDG_RUNTIME_DIR", temp_.path().c_str(), 1); }
    ~SavedPlaces() override { ::unsetenv("XDG_RUNTIME_DIR"); }

    void BeginLocationUpdate() override { messages_ += "0 "; }
    void LocationUpdated(bool notUpdating) override { messages_ += notUpdating ? "1:t " : "1:f "; }
    void LocationUpdateFailed() override { messages_ += "2 "; }
    void LocationServicesPermissionDenied() override { messages_ += "3 "; }

    // A fresh manager and queue over this test's files, loaded; answers the warnings it wrote.
    std::string load() {
        manager_.reset();  // before the queue its timers wait on
        queue_ = std::make_unique<ManualQueue>(kStart);
        manager_ = std::make_unique<LocationManager>(LocationManagerServices{
            .sharedDefaults = defaults_,
            .legacyListFile = legacyFile_,
            .mainQueue = queue_.get(),
            .makePlatformManager = [this] { return makePlatformLocationManager({kind_}, *queue_); },
            .clock = queue_->clock(),
            .deviceZone = *TimeZone::named("Europe/Paris"),
        });
        messages_.clear();
        manager_->SubscribeToNotification(this);
        ::testing::internal::CaptureStderr();
        manager_->loadFromSharedContainerFile();
        return ::testing::internal::GetCapturedStderr();
    }

    [[nodiscard]] std::string names() const {
        std::string all;
        for (std::size_t i = 1; i < manager_->Count(); ++i) {
            all += *manager_->GetLocationNameAtIndex(i);
        }
        return all;
    }

    LocationService::Kind kind_ = LocationService::Kind::silent;
    testing::TempFolder temp_{"lunoval-places"};
    UserDefaults defaults_{temp_.path() / "group.plist"};
    fs::path legacyFile_ = temp_.path() / "locations.plist";
    std::unique_ptr<ManualQueue> queue_;
    std::string messages_;
    std::unique_ptr<LocationManager> manager_;
};

// What the user keeps in the shared file is theirs to mend: a load skips what is no place,
// with a word each, and never writes the file back.
TEST_F(SavedPlaces, LoadingSkipsWhatIsNoPlaceAndNeverRewritesTheFile) {
    const auto place = [](PropertyValue latitude, double longitude, const char* name = "") {
        return PropertyValue{
            {"latitude", std::move(latitude)}, {"longitude", longitude}, {"location_name", name}};
    };
    const PropertyValue ab = {place(10, 20.5, "A"), place(11.5, 21.5, "B")};
    // The equator, the prime meridian, no number, off the globe, no dictionary, text; a place.
    const PropertyValue damaged = {
        place(0, 5), place(5, 0),       place(std::nan(""), 5),         place(5, 1e300),
        "Quito",     place("-0.18", 5), place(-33.87, 151.21, "Sydney")};
    // The stored list and selection; the places and selection read, and the warnings.
    using Case = std::tuple<PropertyValue, PropertyValue, const char*, std::size_t, long>;
    for (const auto& [locations, selectedIndex, names, selected, warnings] : std::vector<Case>{
             {damaged, 2, "Sydney", 0, 6},
             {ab, 2.0, "AB", 2, 0},  // a whole number stored as a real one
             {ab, 1.5, "AB", 0, 0},
             {ab, -1.0, "AB", 0, 0},
             {ab, "1", "AB", 0, 0},
             {{{"location_name", "Quito"}}, 1, "San Francisco, CA", 0, 1}}) {  // not a list
        SCOPED_TRACE(locations.dump() + " " + selectedIndex.dump());
        defaults_.setObjects({{"locations", locations}, {"selectedIndex", selectedIndex}});
        const auto before = readWholeFile(defaults_.file());
        const auto said = load();
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), warnings) << said;
        EXPECT_EQ(this->names(), names);
        EXPECT_EQ(manager_->GetSelectedLocationIndex(), selected);
        EXPECT_EQ(readWholeFile(defaults_.file()), before);
    }
}

TEST_F(SavedPlaces, TakingOverTheLegacyListSkipsDamagedLinesAndKeepsTheDeviceZone) {
    std::ofstream(legacyFile_) << "<plist version=\"1.0\"><array>"
                                  "<string>51.5$$-0.12$$Here$$Europe/London$$0</string>"
                                  "<string>35.68$$139.69$$Tokyo$$Asia/Tokyo$$32400</string>"
                                  "<string>not enough$$fields</string>"
                                  "<string>91.0$$181.0$$Off the globe$$UTC$$0</string>"
                                  "<string>nan$$10$$Damaged$$UTC$$0</string>"
                                  "<string>10$$10$$Nowhere$$../../etc/passwd$$0</string>"
                                  "</array></plist>";
    const auto said = load();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 4) << said;
    EXPECT_NE(said.find("../../etc/passwd"), std::string::npos);
    EXPECT_EQ(names(), "Tokyo");
    EXPECT_EQ(manager_->userCurrentLocation().timezoneId, "Europe/Paris");  // not the file's
}

// An update ends with an accurate or a stale fix, a denial, or its timer; a fix selects the
// device and is cached for the widgets, which are reloaded once it ends the update. A failure
// puts the selection back.
TEST_F(SavedPlaces, AnUpdateEndsByAFixADenialOrItsTimer) {
    widgetkit::ReloadListener widgets;
    const int none = -1;
    // The fix's accuracy and seconds after the start, the error after it; the messages by the
    // timer's end, the selection and device latitude then, and whether the widgets reloaded.
    using Case = std::tuple<double, double, int, const char*, std::size_t, double, bool>;
    for (const auto& [accuracy, later, error, messages, selected, latitude, reloads] :
         std::vector<Case>{
             {500, 0, none, "0 1:f 2 ", 0, 48.8566, false},
             {50, 0, none, "0 1:t ", 0, 48.8566, true},
             {500, 61, none, "0 1:t ", 0, 48.8566, true},
             {200, 60.9, none, "0 1:f ", 0, 48.8566, false},
             {0, 61, none, "0 1:t ", 0, 48.8566, true},
             {0, 0, none, "0 1:f ", 0, 48.8566, false},
             {500, 0, LocationError::locationUnknown, "0 1:f 2 1:f 2 ", 2, 48.8566, false},
             {500, 0, LocationError::denied, "0 1:f 3 1:t ", 2, 0, false}}) {
        SCOPED_TRACE(std::to_string(accuracy) + " after " + std::to_string(later));
        const PropertyValue saved = {{"latitude", 10}, {"longitude", 20}};
        defaults_.setObjects({{"locations", {saved, saved}}, {"selectedIndex", 2}});
        load();
        auto& list = *manager_;
        list.SetOptions(100, 3, 1.0);
        list.ChangeSelectedLocation(0);
        queue_->advance(later);
        list.didUpdateLocations({{48.8566, 2.3522, accuracy}});
        EXPECT_EQ(defaults_.doubleForKey("WidgetLastLocationTimestamp"),
                  queue_->now().timeIntervalSince1970());
        if (error != none) {
            list.didFailWithError({"", "NetworkErrorDomain", LocationError::denied});  // not ours
            list.didFailWithError({"", std::string(kLocationErrorDomain), error});
        }
        queue_->advance(300 - later);
        EXPECT_EQ(messages_, messages);
        EXPECT_EQ(list.GetSelectedLocationIndex(), selected);
        EXPECT_EQ(list.userCurrentLocation().latitude, latitude);
        EXPECT_EQ(widgets.drain(), reloads);
    }
}

// Removing or moving a saved place keeps the selection on the record it named, except that a
// removal before it leaves the index where it was; the device entry neither goes nor moves.
TEST_F(SavedPlaces, EditsKeepTheSelectionOnItsPlace) {
    auto abcd = PropertyValue::array();
    for (const char* name : {"A", "B", "C", "D"})
        abcd.push_back({{"latitude", 10}, {"longitude", 20}, {"location_name", name}});
    // Removed (no destination) or moved, the selection before; the names and selection after.
    const std::vector<std::tuple<int, std::optional<int>, int, const char*, std::size_t>> cases{
        {2, {}, 2, "ACD", 0}, {1, {}, 3, "BCD", 3}, {0, {}, 2, "ABCD", 2}, {5, {}, 2, "ABCD", 2},
        {1, 3, 1, "BCAD", 3}, {1, 3, 2, "BCAD", 1}, {4, 2, 3, "ADBC", 4},  {4, 2, 1, "ADBC", 1},
        {0, 2, 1, "ABCD", 1}, {1, 5, 1, "ABCD", 1}, {2, 0, 1, "ABCD", 1},
    };
    for (const auto& [from, to, selected, names, after] : cases) {
        defaults_.setObjects({{"locations", abcd}, {"selectedIndex", selected}});
        load();
        to ? manager_->RearrangeItem(from, *to) : manager_->RemoveFromLocationList(from);
        EXPECT_EQ(this->names(), names);
        EXPECT_EQ(manager_->GetSelectedLocationIndex(), after);
    }
}

// The user's answer to the first request starts the update it waited for, or ends it denied;
// choosing a saved place ends it too.
TEST_F(SavedPlaces, TheAnswerToTheFirstRequestStartsOrEndsTheUpdate) {
    kind_ = LocationService::Kind::undetermined;
    using enum AuthorizationStatus;
    const std::vector<std::tuple<AuthorizationStatus, const char*, bool>> cases{
        {authorizedWhenInUse, "0 ", true}, {authorizedAlways, "0 ", true},
        {restricted, "0 ", true},          {denied, "3 ", false},
        {notDetermined, "", true},
    };
    for (const auto& [answer, messages, updating] : cases) {
        load();
        manager_->GetSelectedLocation();  // the device, not located yet: asks for it
        manager_->didChangeAuthorization(answer);
        EXPECT_EQ(messages_, messages);
        EXPECT_EQ(manager_->isUpdatingCurrentLocation(), updating);
    }
    manager_->ChangeSelectedLocation(1);
    EXPECT_FALSE(manager_->isUpdatingCurrentLocation());
}

}  // namespace
}  // namespace lunoval
