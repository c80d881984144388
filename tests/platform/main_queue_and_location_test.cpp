#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/date_formatter.hpp"
#include "platform/location_services.hpp"
#include "platform/main_queue.hpp"
#include "platform/number_text.hpp"
#include "platform/usable_locale.hpp"

namespace lunoval {
namespace {

using namespace std::string_literals;

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);

TEST(ManualQueue, RunsDelayedBlocksOnlyWhenTheClockReachesThem) {
    ManualQueue queue(kStart);
    std::vector<std::string> ran;
    queue.asyncAfter(8.0, [&] {
        ran.push_back("time-out at " +
                      std::to_string(queue.now().timeIntervalSince1970() - 1760000000));
    });
    queue.async([&] {
        ran.emplace_back("first");
        queue.async([&] { ran.emplace_back("added while running"); });
    });
    queue.async([&] { ran.emplace_back("second"); });
    queue.runDue();
    EXPECT_EQ(ran, (std::vector<std::string>{"first", "second", "added while running"}));
    queue.advance(7.999);
    EXPECT_EQ(ran.size(), 3U);
    queue.advance(0.001);
    ASSERT_EQ(ran.size(), 4U);
    EXPECT_EQ(ran.back(), "time-out at 8.000000");
    EXPECT_EQ(queue.clock()(), kStart.addingTimeInterval(8));
}

TEST(EventLoopQueue, RunsUntilDoneOrOutOfWork) {
    EventLoopQueue queue;
    int ran = 0;
    queue.asyncAfter(0.02, [&] { ++ran; });
    queue.asyncAfter(5.0, [&] { ++ran; });
    queue.runUntil([&] { return ran == 1; });
    EXPECT_EQ(ran, 1);
}

TEST(Distance, IsGeodesicOnTheEllipsoid) {
    // One degree along the equator and along the meridian from it, on WGS-84.
    EXPECT_NEAR(distanceMeters({0, 0}, {0, 1}), 111319.49, 0.01);
    EXPECT_NEAR(distanceMeters({0, 0}, {1, 0}), 110574.39, 0.01);
    // Across the pole between two meridians half a turn apart: twice the arc from 89.5 to 90.
    EXPECT_NEAR(distanceMeters({89.5, 10}, {89.5, -170}), 2 * 55847.0, 100);
}

TEST(LocationService, ReadsTheDeviceOption) {
    EXPECT_EQ(LocationService::parse("silent")->kind, LocationService::Kind::silent);
    const auto fixed = LocationService::parse("fixed:+48.85,-2.5");
    ASSERT_TRUE(fixed);
    EXPECT_EQ(fixed->fix.latitude, 48.85);
    EXPECT_EQ(fixed->fix.longitude, -2.5);
    for (const char* bad : {"", "fixed", "fixed:", "fixed:91,0", "fixed:0,181", "fixed:1",
                            "fixed:1,2,3", "fixed:nan,0", "geoclue?", "Denied"}) {
        EXPECT_FALSE(LocationService::parse(bad)) << bad;
    }
}

TEST(DecimalNumber, ReadsWhatPeopleTypeAndNothingElse) {
    const std::vector<std::pair<std::string, std::optional<double>>> cases{
        {"48.85", 48.85}, {"+48.85", 48.85}, {"-0.5", -0.5}, {".5", 0.5},  {"1e-3", 0.001},
        {"16", 16},       {"0x10", {}},      {"inf", {}},    {"-nan", {}}, {"1e400", {}},
        {"", {}},         {"+", {}},         {"+-1", {}},    {"++1", {}},  {" 1", {}},
        {"1 ", {}},       {"1,5", {}},       {"1.5x", {}},   {"1\0"s, {}}};
    for (const auto& [text, expected] : cases) EXPECT_EQ(decimalNumber(text), expected) << text;
}

// Dates can be formatted in whatever locale is asked for: one ICU cannot use becomes the
// nearest it can, and says so.
TEST(UsableLocale, FallsBackToTheLanguageElsePosixEnglish) {
    struct Case {
        std::string asked;
        std::string usable;
        bool warns;
    };
    for (const auto& [asked, usable, warns] : {
             Case{"de_DE", "de_DE", false},
             Case{"de-DE", "de_DE", false},
             Case{"pt_BR.UTF-8", "pt_BR", false},
             Case{"xxxxxxxxxxxx", "en_US_POSIX", true},
             Case{"abcdefghijkl_DE", "en_US_POSIX", true},
             Case{"qq_QQ", "en_US_POSIX", true},
             Case{"", "en_US_POSIX", true},
             Case{"de@numbers=xxxx", "de", true},
             Case{"de_DE_" + std::string(200, 'X'), "de", true},
         }) {
        const auto locale = usableLocale(asked);
        EXPECT_EQ(locale.identifier, usable) << asked;
        EXPECT_EQ(locale.warning.has_value(), warns) << asked;
        const DateFormatter formatter{locale.identifier, TimeZone::utc()};
        EXPECT_FALSE(formatter.shortTime(kStart).empty()) << asked;
    }
}

struct Recorder : PlatformLocationDelegate {
    void didUpdateLocations(const std::vector<Location>& locations) override {
        answers.push_back("fix " + std::to_string(locations.back().latitude));
    }
    void didFailWithError(const LocationError&) override { answers.emplace_back("error"); }
    std::vector<std::string> answers;
};

TEST(StandInServices, AnswerOnTheMainQueueAsConfigured) {
    struct Case {
        const char* service;
        AuthorizationStatus status;
        bool widgetAuthorized;
        bool hasLastLocation;
        std::vector<std::string> answers;
    };
    const std::vector<Case> cases{
        {"fixed:12.5,3", AuthorizationStatus::authorizedAlways, true, true, {"fix 12.500000"}},
        {"denied", AuthorizationStatus::denied, false, false, {"error"}},
        {"undetermined", AuthorizationStatus::notDetermined, false, false, {"error"}},
        {"unavailable", AuthorizationStatus::authorizedAlways, true, false, {"error"}},
        {"silent", AuthorizationStatus::authorizedAlways, true, false, {}},
    };
    for (const auto& [service, status, widgetAuthorized, hasLastLocation, answers] : cases) {
        ManualQueue queue(kStart);
        Recorder recorder;
        const auto manager = makePlatformLocationManager(*LocationService::parse(service), queue);
        manager->setDelegate(&recorder);
        EXPECT_EQ(manager->authorizationStatus(), status) << service;
        EXPECT_EQ(manager->isAuthorizedForWidgetUpdates(), widgetAuthorized) << service;
        EXPECT_EQ(manager->location().has_value(), hasLastLocation) << service;
        manager->requestLocation();
        EXPECT_TRUE(recorder.answers.empty()) << "answers must come later, from the queue";
        queue.advance(60);
        EXPECT_EQ(recorder.answers, answers) << service;
    }
}

}  // namespace
}  // namespace lunoval
