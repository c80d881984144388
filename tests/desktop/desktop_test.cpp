#include <gtest/gtest.h>

#include <chrono>

#include "desktop/saved_places.hpp"
#include "platform/refresh_schedule.hpp"

namespace lunoval::desktop {
namespace {

using namespace std::chrono_literals;
using widgetkit::RefreshSchedule;
using Clock = RefreshSchedule::Clock;

// A refresh that began at 0 and took 2 seconds, with a one-minute budget; reload requests at
// the given times (seconds after the start).
struct ScheduleCase {
    const char* name;
    std::vector<double> requests;
    double dueSeconds;
    bool dueToReload;
};

TEST(RefreshSchedule, RefreshesOnTheBudgetOrOnceAfterARequestButNotTwiceInASecond) {
    const std::vector<ScheduleCase> cases{
        {"no request: the budget after the refresh ended", {}, 62, false},
        {"a request after the refresh: at once", {5}, 5, true},
        {"a request within a second of the start: a second after it", {0.25}, 1, true},
        {"a burst: the first request counts", {3, 4, 50}, 3, true},
        {"a request past the budget: the budget", {70}, 62, false},
    };
    const auto start = Clock::time_point{} + 1000s;
    const auto at = [&](double seconds) {
        return start +
               std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    };
    for (const auto& test : cases) {
        auto schedule = RefreshSchedule::after(start, at(2), 1);
        for (const double request : test.requests) schedule.requestReload(at(request));
        EXPECT_EQ(schedule.due(), at(test.dueSeconds)) << test.name;
        EXPECT_EQ(schedule.dueToReload(), test.dueToReload) << test.name;
    }
}

TEST(SavedPlaces, ReadsTheListAsTheLocationsCommandPrintsIt) {
    const auto places = parseSavedPlaces(
        R"({"selectedIndex":2,"locations":[{"name":"Current Location","latitude":0},)"
        R"({"name":"Paris"},{"name":"Quito, Ecuador"}]})");
    ASSERT_TRUE(places);
    EXPECT_EQ(places->names,
              (std::vector<std::string>{"Current Location", "Paris", "Quito, Ecuador"}));
    EXPECT_EQ(places->selectedIndex, 2U);
}

TEST(SavedPlaces, RefusesWhatIsNotSuchAList) {
    for (const char* text : {"", "[]", "{\"selectedIndex\":0}", "{\"locations\":[]}",
                             R"({"selectedIndex":-1,"locations":[]})",
                             R"({"selectedIndex":0,"locations":[{"name":3}]})",
                             R"({"selectedIndex":0,"locations":["Paris"]})"}) {
        EXPECT_FALSE(parseSavedPlaces(text)) << text;
    }
}

}  // namespace
}  // namespace lunoval::desktop
