#include <gtest/gtest.h>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "platform/location_services.hpp"
#include "platform/main_queue.hpp"

namespace lunoval {
namespace {

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);

TEST(ManualQueue, RunsBlocksInOrderAndDelayedOnesWhenItsClockReachesThem) {
    ManualQueue queue(kStart);
    std::vector<std::string> ran;
    queue.asyncAfter(8.0, [&] {
        ran.push_back(std::to_string(queue.now().timeIntervalSince1970() - 1760000000));
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
    queue.advance(2);
    EXPECT_EQ(ran.back(), "8.000000");  // run at its instant, not at the end of the advance
    EXPECT_NEAR(queue.clock()().timeIntervalSince1970() - 1760000000, 9.999, 1e-6);
}

struct Answers : PlatformLocationDelegate {
    void didUpdateLocations(const std::vector<Location>& /*fixes*/) override { got = "a fix"; }
    void didFailWithError(const LocationError& error) override { got = error.localizedDescription; }
    std::string got;
};

// A refusal, and GeoClue out of reach, end an update with a failure from the queue rather than
// leave the widget waiting for a fix.
TEST(LocationServices, ARefusalOrNoGeoClueEndsAnUpdateWithAFailure) {
    // No system bus here, whatever the machine has.
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/lunoval-bus", 1);
    for (const auto& [service, said] : std::vector<std::pair<const char*, const char*>>{
             {"denied", "Access to location services was denied."},
             {"geoclue", "GeoClue could not be reached."}}) {
        ManualQueue queue(kStart);
        Answers answers;
        const auto manager = makePlatformLocationManager(*LocationService::parse(service), queue);
        manager->setDelegate(&answers);
        manager->startUpdatingLocation();
        queue.advance(1);
        EXPECT_EQ(answers.got, said) << service;
    }
    EXPECT_TRUE(LocationService::parse("fixed:+12.5,3") && !LocationService::parse("fixed:+-1,0"));
}

}  // namespace
}  // namespace lunoval
