#include <gtest/gtest.h>
#include <cmath>
#include <vector>

#include "astro/moon_illumination.hpp"
#include "astro/sun_times.hpp"
#include "test_dates.hpp"

namespace lunoval::Solar {
namespace {

using lunoval::testing::utc;
using lunoval::testing::zone;

double seconds(Date date) {
    return date.timeIntervalSince1970();
}

// Almanac times in 2025 to the minute (UTC); the closed-form series is good to about a minute.
TEST(SunTimes, AgreeWithPublishedTimes) {
    struct Published {
        const char* place;
        Observer observer;
        const char* zone;
        int month, day, riseHour, riseMinute, setHour, setMinute;
    };
    for (const auto& c : std::vector<Published>{
             {"Greenwich", {51.4769, -0.0005}, "Europe/London", 6, 21, 3, 43, 20, 21},
             {"Greenwich", {51.4769, -0.0005}, "Europe/London", 12, 21, 8, 4, 15, 53},
             {"Quito", {-0.1807, -78.4678}, "America/Guayaquil", 3, 20, 11, 19, 23, 25},
         }) {
        const Date day = utc(2025, c.month, c.day, 12);
        const auto rise = sunrise(day, zone(c.zone), c.observer);
        const auto set = sunset(day, zone(c.zone), c.observer);
        ASSERT_TRUE(rise && set) << c.place;
        const auto expected = [&](int hour, int minute) {
            return seconds(utc(2025, c.month, c.day, hour, minute));
        };
        EXPECT_NEAR(seconds(*rise), expected(c.riseHour, c.riseMinute), 90) << c.place;
        EXPECT_NEAR(seconds(*set), expected(c.setHour, c.setMinute), 90) << c.place;
    }
}

TEST(MoonIllumination, MatchesTheLitFractionAtPublishedPhases) {
    for (const auto& [instant, fraction, waxing] :
         std::vector<std::tuple<Date, double, bool>>{{utc(2024, 4, 8, 18, 21), 0.0, true},
                                                     {utc(2025, 10, 7, 3, 48), 1.0, false},
                                                     {utc(2025, 10, 29, 16, 21), 0.5, true},
                                                     {utc(2025, 10, 13, 18, 13), 0.5, false}}) {
        const auto illumination = moonIllumination(instant);
        EXPECT_NEAR(illumination.fraction, fraction, 0.02) << seconds(instant);
        // Waxing or waning only away from new and full moon.
        EXPECT_TRUE(fraction == 0 || fraction == 1 || (illumination.phaseAngle > 0) == waxing)
            << seconds(instant);
    }
}

}  // namespace
}  // namespace lunoval::Solar
