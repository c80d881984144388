#include "platform/calendar.hpp"

#include <gtest/gtest.h>
#include <cmath>
#include <tuple>
#include <vector>

#include "astro/test_dates.hpp"

namespace lunoval {
namespace {

using testing::utc;

Calendar in(const char* zone) {
    return Calendar(*TimeZone::named(zone));
}

// The zone check compares every zone from 2038 on; before that, the changes listed in the
// zone files must be today's rules, not those of an older copy.
TEST(TimeZone, ReadsTodaysRulesAndRejectsUnknownNames) {
    // Egypt brought summer time back in 2023; Nuuk moved to -2 standard time that year.
    EXPECT_EQ(TimeZone::named("Africa/Cairo")->offsetFromUTC(utc(2025, 7, 1))->count(), 10800);
    EXPECT_EQ(TimeZone::named("America/Nuuk")->offsetFromUTC(utc(2025, 1, 15))->count(), -7200);
    for (const char* name : {"Mars/Olympus_Mons", "", "../../etc/passwd"}) {
        EXPECT_FALSE(TimeZone::named(name)) << name;
    }
}

// A skipped local time becomes the first instant after the gap; a repeated one, the first.
TEST(Calendar, LocalTimesInGapsAndRepeatsResolveForward) {
    const std::vector<std::tuple<const char*, Date, Date>> startsOfDay{
        // Santiago skips 00:00-01:00 on 2024-09-08: the day starts at 01:00 local.
        {"America/Santiago", utc(2024, 9, 8, 15, 0), utc(2024, 9, 8, 4, 0)},
        // Havana repeats 00:00-01:00 on 2024-11-03: the day starts at the first midnight.
        {"America/Havana", utc(2024, 11, 3, 15, 0), utc(2024, 11, 3, 4, 0)},
        {"Pacific/Chatham", utc(2025, 1, 1, 0, 0), utc(2024, 12, 31, 10, 15)},
        {"America/Nuuk", utc(2059, 8, 2, 3, 10), utc(2059, 8, 2, 1, 0)},  // by the later rule
    };
    for (const auto& [zone, instant, start] : startsOfDay) {
        EXPECT_EQ(in(zone).startOfDay(instant), start) << zone;
    }
    // Lord Howe Island moves by half an hour: 02:00 becomes 02:30 on 2024-10-06.
    const auto lordHowe = in("Australia/Lord_Howe");
    EXPECT_EQ(lordHowe.dateBySettingTime(2, 15, 0, utc(2024, 10, 6, 3)), utc(2024, 10, 5, 15, 30));
    EXPECT_EQ(lordHowe.dateBySettingTime(12, 0, 0, utc(2024, 10, 6, 3)), utc(2024, 10, 6, 1, 0));
    // 2050-03-27 starts summer time in Berlin at 02:00, by the rule for the later years.
    const auto berlin = in("Europe/Berlin");
    EXPECT_EQ(berlin.dateBySettingTime(2, 30, 0, utc(2050, 3, 27, 12)), utc(2050, 3, 27, 1, 0));
    // Across the spring change a day later is 23 hours later, at the same wall-clock time.
    EXPECT_EQ(berlin.addingDays(1, utc(2025, 3, 29, 11).addingTimeInterval(0.25)),
              utc(2025, 3, 30, 10).addingTimeInterval(0.25));
    EXPECT_TRUE(berlin.isDateInSameDay(utc(2025, 3, 29, 23, 30), utc(2025, 3, 30, 21, 59)));
    EXPECT_FALSE(berlin.isDateInSameDay(utc(2025, 3, 29, 22, 59), utc(2025, 3, 29, 23, 0)));
}

}  // namespace
}  // namespace lunoval
