#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include "temp_folder.hpp"

#include "locations/widget_location_cache.hpp"
#include "locations/widget_location_manager.hpp"
#include "platform/number_text.hpp"

namespace lunoval {
namespace {

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);
const Location kParis{48.8566, 2.3522};

TEST(DoubleDescription, PrintsTheShortestRoundTrip) {
    const std::vector<std::pair<double, const char*>> cases{
        {48.8566, "48.8566"}, {24, "24.0"},
        {-0.5, "-0.5"},       {1439.0 / 60, "23.983333333333334"},
        {0, "0.0"},           {1e-05, "1e-05"},
        {1e16, "1e+16"},      {123456.0, "123456.0"}};
    for (const auto& [value, text] : cases) EXPECT_EQ(doubleDescription(value), text);
}

using FreshFix = WidgetLocationManager::FreshFix;

class WidgetLocation : public ::testing::Test {
  protected:
    [[nodiscard]] UserDefaults defaults() const { return UserDefaults(folder_ / "group.plist"); }

    void cacheAt(const Location& location, double secondsAgo) const {
        queue.advance(0);
        widgetcache::saveLocationToCache(defaults(), location,
                                         queue.now().addingTimeInterval(-secondsAgo));
    }

    struct Answer {
        std::optional<Location> location;
        bool success = false;
        bool authorized = false;
        int calls = 0;
    };

    // Runs one request through a stand-in service and the queue; returns the log it wrote.
    std::string request(const char* service, FreshFix freshFix, Answer& answer) {
        ::testing::internal::CaptureStdout();
        WidgetLocationManager manager(
            makePlatformLocationManager(*LocationService::parse(service), queue), defaults(),
            queue.clock());
        manager.requestLocation(freshFix, [&](auto location, bool success, bool authorized) {
            answer = {location, success, authorized, answer.calls + 1};
        });
        queue.advance(10);
        return ::testing::internal::GetCapturedStdout();
    }

    lunoval::testing::TempFolder temp_{"lunoval-widget"};
    const std::filesystem::path& folder_ = temp_.path();
    mutable ManualQueue queue{kStart};
};

TEST_F(WidgetLocation, ACacheIsYoungUpToADay) {
    cacheAt(kParis, 86400 - 60);
    ::testing::internal::CaptureStdout();
    const auto young = widgetcache::cachedLocation(defaults(), std::nullopt, kStart);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "✅ Widget: Using cached location from 1439.0 minutes ago\n");
    ASSERT_TRUE(young);
    EXPECT_EQ(young->latitude, kParis.latitude);

    cacheAt(kParis, 86400);
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(widgetcache::cachedLocation(defaults(), std::nullopt, kStart));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "⚠️ Widget: Cached location is too old (24.0 hours)\n");
}

// A stamp that is missing or not a number is none; any number is one (from the future, merely
// young). A point off the globe can only come from a damaged file and is no cache.
TEST_F(WidgetLocation, WhatADamagedFileHolds) {
    struct Case {
        const char* key;
        PropertyValue stored;
        bool cached, requests;
    };
    const double nan = std::nan("");
    for (const auto& [key, stored, cached, requests] : std::vector<Case>{
             {"WidgetLastLocationTimestamp", nan, false, true},
             {"WidgetLastLocationTimestamp", "yesterday", false, true},
             {"WidgetLastLocationTimestamp", HUGE_VAL, true, true},
             {"WidgetLastLocationLat", nan, false, true},
             {"WidgetLastLocationLng", HUGE_VAL, false, true},
             {"WidgetLastLocationLat", 1e300, false, true},
             {"WidgetLastLocationRequestTimestamp", nan, true, true},
             {"WidgetLastLocationRequestTimestamp", "soon", true, true},
             {"WidgetLastLocationRequestTimestamp", HUGE_VAL, true, false},
         }) {
        cacheAt(kParis, 60);
        defaults().setObjects({{key, stored}});
        ::testing::internal::CaptureStdout();
        EXPECT_EQ(widgetcache::cachedLocation(defaults(), std::nullopt, kStart).has_value(), cached)
            << key << " " << stored;
        ::testing::internal::GetCapturedStdout();
        EXPECT_EQ(widgetcache::shouldRequestLocation(defaults(), kStart), requests)
            << key << " " << stored;
    }
}

TEST_F(WidgetLocation, OnlyAMoveOfMoreThanFiftyKilometresReplacesTheCache) {
    cacheAt(kParis, 600);
    const Location near{kParis.latitude + 0.44, kParis.longitude};  // about 49 km north
    const Location far{kParis.latitude + 0.47, kParis.longitude};   // about 52 km north
    EXPECT_EQ(widgetcache::cachedLocation(defaults(), near, kStart)->latitude, kParis.latitude);
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(widgetcache::cachedLocation(defaults(), far, kStart)->latitude, far.latitude);
    const auto log = ::testing::internal::GetCapturedStdout();
    EXPECT_TRUE(log.starts_with("⚠️ Widget: User moved 52.")) << log;
    EXPECT_TRUE(log.ends_with("km, updating cache with new location\n")) << log;
    EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationLat"), far.latitude);
}

TEST_F(WidgetLocation, NotAuthorizedAnswersAtOnceWithoutALocation) {
    Answer answer;
    EXPECT_EQ(request("denied", FreshFix::allowed, answer),
              "✅ Widget: Authorization - App: 2, Widget: false\n"
              "⚠️ Widget: Not authorized for widget updates\n");
    EXPECT_EQ(answer.calls, 1);
    EXPECT_FALSE(answer.location || answer.success || answer.authorized);
}

TEST_F(WidgetLocation, TheSystemFixIsUsedAndCached) {
    Answer answer;
    EXPECT_EQ(request("fixed:12.5,3", FreshFix::notAllowed, answer),
              "✅ Widget: Authorization - App: 3, Widget: true\n"
              "✅ Widget: Using system cached location: 12.5, 3.0\n");
    EXPECT_TRUE(answer.success && answer.authorized);
    EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationLng"), 3.0);
    EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationTimestamp"), 1760000000.0);
}

TEST_F(WidgetLocation, AtMostOneFreshRequestAnHour) {
    Answer first;
    EXPECT_EQ(request("silent", FreshFix::allowed, first),
              "✅ Widget: Authorization - App: 3, Widget: true\n"
              "📍 Widget: No cached location, requesting fresh location...\n");
    EXPECT_EQ(first.calls, 0);  // the silent service never answers
    queue.advance(3000);        // with the 10 s each request runs, still within the hour
    Answer second;
    EXPECT_EQ(request("silent", FreshFix::allowed, second),
              "✅ Widget: Authorization - App: 3, Widget: true\n"
              "⏸️ Widget: Location request throttled, using nil\n");
    EXPECT_EQ(second.calls, 1);
    EXPECT_TRUE(second.success && !second.location);
}

TEST_F(WidgetLocation, ACachedPointAnswersFirstAndAFreshFixRefreshesTheCache) {
    cacheAt(kParis, 1800);
    Answer answer;
    request("fixed:0,0", FreshFix::allowed, answer);  // system fix present: used directly
    EXPECT_EQ(answer.location->latitude, 0);
    defaults().removeObject("WidgetLastLocationRequestTimestamp");
    cacheAt(kParis, 1800);
    Answer unavailable;
    EXPECT_EQ(request("unavailable", FreshFix::allowed, unavailable),
              "✅ Widget: Authorization - App: 3, Widget: true\n"
              "✅ Widget: Using cached location from 30.0 minutes ago\n"
              "✅ Widget: Using widget cached location: 48.8566, 2.3522\n"
              "📍 Widget: Requesting fresh location in background (throttle check passed)...\n"
              "⚠️ Widget Location Error: The location could not be determined.\n"
              "✅ Widget: Using cached location from 30.0 minutes ago\n"
              "✅ Widget: Using cached location as fallback\n");
    EXPECT_EQ(unavailable.calls, 2);
    Answer throttled;
    EXPECT_NE(
        request("unavailable", FreshFix::allowed, throttled)
            .find(
                "⏸️ Widget: Skipping location request (throttled, last request 0 minutes ago)"),
        std::string::npos);
}

TEST_F(WidgetLocation, TheLastOfSeveralFixesIsTakenAndAFailureWhileDeniedGivesNothing) {
    Answer answer;
    WidgetLocationManager manager(
        makePlatformLocationManager(*LocationService::parse("denied"), queue), defaults(),
        queue.clock());
    manager.requestLocation(FreshFix::allowed, [&](auto location, bool success, bool authorized) {
        answer = {location, success, authorized, answer.calls + 1};
    });
    manager.didUpdateLocations({{1, 1}, {2, 2}});
    EXPECT_EQ(answer.location->latitude, 2);
    EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationLat"), 2.0);
    manager.didFailWithError({"denied"});
    EXPECT_FALSE(answer.location || answer.success);
}

}  // namespace
}  // namespace lunoval
