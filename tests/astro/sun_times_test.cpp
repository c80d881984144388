#include "astro/sun_times.hpp"

#include <gtest/gtest.h>
#include <vector>

#include "test_dates.hpp"

namespace lunoval::Solar {
namespace {

using lunoval::testing::utc;
using lunoval::testing::zone;

struct PublishedSunTimes {
    const char* place;
    double latitude;
    double longitude;
    const char* zone;
    Date day;  // any instant on the local day
    Date sunrise;
    Date sunset;
};

// Almanac times to the minute; the closed-form series is good to about a minute.
TEST(SunTimes, AgreeWithPublishedTimes) {
    const std::vector<PublishedSunTimes> almanac{
        {"Greenwich, midsummer", 51.4769, -0.0005, "Europe/London", utc(2025, 6, 21, 12),
         utc(2025, 6, 21, 3, 43), utc(2025, 6, 21, 20, 21)},
        {"Greenwich, midwinter", 51.4769, -0.0005, "Europe/London", utc(2025, 12, 21, 12),
         utc(2025, 12, 21, 8, 4), utc(2025, 12, 21, 15, 53)},
        {"Quito, equinox", -0.1807, -78.4678, "America/Guayaquil", utc(2025, 3, 20, 17),
         utc(2025, 3, 20, 11, 19), utc(2025, 3, 20, 23, 25)},
    };
    for (const auto& c : almanac) {
        const auto rise = sunrise(c.day, zone(c.zone), {c.latitude, c.longitude});
        const auto set = sunset(c.day, zone(c.zone), {c.latitude, c.longitude});
        ASSERT_TRUE(rise && set) << c.place;
        EXPECT_NEAR(rise->timeIntervalSince1970(), c.sunrise.timeIntervalSince1970(), 90)
            << c.place;
        EXPECT_NEAR(set->timeIntervalSince1970(), c.sunset.timeIntervalSince1970(), 90) << c.place;
    }
}

TEST(SunTimes, ARiseFarEastOfTheZoneMeridianIsNotClampedToTheLocalDay) {
    // Kiritimati keeps UTC+14 at 157 degrees west: its sunrise falls on the previous UTC day.
    const auto rise = sunrise(utc(2025, 3, 15, 0), zone("Pacific/Kiritimati"), {1.87, -157.4});
    ASSERT_TRUE(rise);
    EXPECT_NEAR(rise->timeIntervalSince1970(), utc(2025, 3, 14, 16, 33).timeIntervalSince1970(),
                300);
}

}  // namespace
}  // namespace lunoval::Solar
