#include "platform/calendar.hpp"

#include <gtest/gtest.h>
#include <cmath>
#include <tuple>
#include <vector>

#include "astro/test_dates.hpp"
#include "platform/date_formatter.hpp"
#include "platform/zone_rule.hpp"

namespace lunoval {
namespace {

using testing::utc;

Calendar in(const char* zone) {
    return Calendar(*TimeZone::named(zone));
}

TEST(TimeZone, KnowsTheDatabaseAndRejectsUnknownNames) {
    EXPECT_TRUE(TimeZone::named("Pacific/Chatham"));
    EXPECT_TRUE(TimeZone::named("America/Argentina/Buenos_Aires"));
    EXPECT_FALSE(TimeZone::named("Mars/Olympus_Mons"));
    EXPECT_FALSE(TimeZone::named(""));
}

TEST(TimeZone, UsesCurrentRulesNotOldOnes) {
    // Egypt brought summer time back in 2023; rules older than that say +2 all year.
    const auto cairo = TimeZone::named("Africa/Cairo");
    EXPECT_EQ(cairo->offsetFromUTC(utc(2025, 7, 1))->count(), 3 * 3600);
    // Greenland's Nuuk moved to -2 standard time in 2023.
    EXPECT_EQ(TimeZone::named("America/Nuuk")->offsetFromUTC(utc(2025, 1, 15))->count(), -2 * 3600);
}

TEST(TimeZone, KeepsDaylightSavingAfterTheLastListedChange) {
    // Zone files list changes up to 2037 and give a rule for the years after.
    const std::vector<std::tuple<const char*, Date, int>> cases{
        {"Europe/Berlin", utc(2038, 7, 1), 2 * 3600},
        {"Europe/Berlin", utc(2099, 12, 1), 3600},
        {"Australia/Sydney", utc(2100, 7, 1), 10 * 3600},
        {"Australia/Sydney", utc(2100, 1, 1), 11 * 3600},
        {"America/Santiago", utc(2060, 1, 15), -3 * 3600},
        {"Asia/Kathmandu", utc(2090, 1, 15), 5 * 3600 + 45 * 60},
        // Greenland's rule changes at -1:00, the day before the last Sunday of March.
        {"America/Nuuk", utc(2059, 7, 1), -3600},
        {"America/Nuuk", utc(2059, 3, 30, 0, 59), -2 * 3600},
        {"America/Nuuk", utc(2059, 3, 30, 1, 0), -3600},
    };
    for (const auto& [name, instant, offset] : cases) {
        EXPECT_EQ(TimeZone::named(name)->offsetFromUTC(instant)->count(), offset) << name;
    }
    // Wall-clock times follow the rule too: 2050-03-27 starts summer time in Berlin at 02:00.
    EXPECT_EQ(in("Europe/Berlin").dateBySettingTime(2, 30, 0, utc(2050, 3, 27, 12)),
              utc(2050, 3, 27, 1, 0));
}

TEST(ZoneRule, ReadsChangesAtAnyHourFileRulesAllow) {
    // Changes from -167 to 167 hours after the start of their day.
    const std::vector<std::tuple<const char*, Date, int>> cases{
        {"AAA0BBB,M3.5.0/150,M10.5.0/167", utc(2059, 4, 5, 5, 59), 0},
        {"AAA0BBB,M3.5.0/150,M10.5.0/167", utc(2059, 4, 5, 6, 0), 3600},
        {"AAA0BBB,M3.5.0/150,M10.5.0/167", utc(2059, 11, 1, 21, 59), 3600},
        {"AAA0BBB,M3.5.0/150,M10.5.0/167", utc(2059, 11, 1, 22, 0), 0},
        {"AAA0BBB,M3.5.0/-100,M10.5.0/-20:30", utc(2059, 3, 25, 19, 59), 0},
        {"AAA0BBB,M3.5.0/-100,M10.5.0/-20:30", utc(2059, 3, 25, 20, 0), 3600},
        {"AAA0BBB,M3.5.0/-100,M10.5.0/-20:30", utc(2059, 10, 25, 2, 29), 3600},
        {"AAA0BBB,M3.5.0/-100,M10.5.0/-20:30", utc(2059, 10, 25, 2, 30), 0},
    };
    for (const auto& [text, instant, offset] : cases) {
        const auto rule = ZoneRule::parse(text);
        ASSERT_TRUE(rule) << text;
        const auto at =
            date::sys_seconds{std::chrono::seconds{std::llround(instant.timeIntervalSince1970())}};
        EXPECT_EQ(rule->sysInfo(at).offset.count(), offset) << text;
    }
}

TEST(Calendar, StartOfDayIsLocalMidnightOrTheFirstInstantAfterASkippedOne) {
    const std::vector<std::tuple<const char*, Date, Date>> cases{
        // 23:30 UTC on the 5th is already the 6th in Paris (+2 in summer).
        {"Europe/Paris", utc(2025, 7, 5, 23, 30), utc(2025, 7, 5, 22, 0)},
        // 02:00 UTC is still the previous day in New York.
        {"America/New_York", utc(2025, 7, 6, 2, 0), utc(2025, 7, 5, 4, 0)},
        {"Asia/Kathmandu", utc(2025, 1, 1, 0, 0), utc(2024, 12, 31, 18, 15)},
        {"Pacific/Chatham", utc(2025, 1, 1, 0, 0), utc(2024, 12, 31, 10, 15)},
        // Santiago skips 00:00-01:00 on 2024-09-08: the day starts at 01:00 local (04:00 UTC).
        {"America/Santiago", utc(2024, 9, 8, 15, 0), utc(2024, 9, 8, 4, 0)},
        // Havana repeats 00:00-01:00 on 2024-11-03: the day starts at the first midnight.
        {"America/Havana", utc(2024, 11, 3, 15, 0), utc(2024, 11, 3, 4, 0)},
        {"America/Nuuk", utc(2059, 8, 2, 3, 10), utc(2059, 8, 2, 1, 0)},
    };
    for (const auto& [zone, instant, expected] : cases) {
        EXPECT_EQ(in(zone).startOfDay(instant), expected) << zone;
    }
}

TEST(Calendar, ComponentsAreWallClockFieldsInTheZone) {
    const auto parts = in("Australia/Eucla").components(utc(2025, 12, 31, 15, 30, 59));
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->year, 2026);
    EXPECT_EQ(parts->month, 1);
    EXPECT_EQ(parts->day, 1);
    EXPECT_EQ(parts->hour, 0);
    EXPECT_EQ(parts->minute, 15);
    EXPECT_EQ(parts->second, 59);
    EXPECT_EQ(parts->weekday, 5);  // a Thursday
}

TEST(Calendar, InstantsWithoutACalendarFormHaveNoComponents) {
    const auto calendar = in("Europe/Berlin");
    EXPECT_FALSE(calendar.components(Date::fromTimeIntervalSince1970(std::nan(""))));
    EXPECT_FALSE(calendar.components(Date::fromTimeIntervalSince1970(1e300)));
    EXPECT_FALSE(calendar.startOfDay(Date::fromTimeIntervalSince1970(-1e300)));
    EXPECT_TRUE(calendar.components(utc(1, 1, 1)));
    EXPECT_TRUE(calendar.components(utc(9999, 12, 31, 23, 59, 59)));
}

TEST(Calendar, OutOfRangeFieldsRollOver) {
    const Calendar calendar(TimeZone::utc());
    EXPECT_EQ(calendar.date(2025, 1, 32), utc(2025, 2, 1));
    EXPECT_EQ(calendar.date(2025, 3, 0), utc(2025, 2, 28));
    EXPECT_EQ(calendar.date(2025, 13, 1), utc(2026, 1, 1));
    EXPECT_EQ(calendar.date(2025, 0, 1), utc(2024, 12, 1));
    EXPECT_EQ(calendar.date(2025, 6, 30, 24, 0), utc(2025, 7, 1));
    EXPECT_FALSE(calendar.date(2025, 6, 30, 1LL << 40, 0));
}

TEST(Calendar, SettingNoonOnASkippedHourGivesTheFirstInstantAfterIt) {
    // Lord Howe Island moves by half an hour: 02:00 becomes 02:30 on 2024-10-06.
    const auto lordHowe = in("Australia/Lord_Howe");
    const auto result = lordHowe.dateBySettingTime(2, 15, 0, utc(2024, 10, 6, 3, 0));
    EXPECT_EQ(result, utc(2024, 10, 5, 15, 30));
    EXPECT_EQ(lordHowe.dateBySettingTime(12, 0, 0, utc(2024, 10, 6, 3, 0)), utc(2024, 10, 6, 1, 0));
}

TEST(Calendar, SameDayAndAddingDaysFollowLocalDays) {
    const auto berlin = in("Europe/Berlin");
    EXPECT_TRUE(berlin.isDateInSameDay(utc(2025, 3, 29, 23, 30), utc(2025, 3, 30, 21, 59)));
    EXPECT_FALSE(berlin.isDateInSameDay(utc(2025, 3, 29, 22, 59), utc(2025, 3, 29, 23, 0)));
    // Across the spring change a day later is 23 hours later, at the same wall-clock time.
    EXPECT_EQ(berlin.addingDays(1, utc(2025, 3, 29, 11, 0, 0).addingTimeInterval(0.25)),
              utc(2025, 3, 30, 10, 0, 0).addingTimeInterval(0.25));
    EXPECT_EQ(Calendar::daysInMonth(2024, 2), 29);
    EXPECT_EQ(Calendar::daysInMonth(2100, 2), 28);
}

TEST(DateFormatter, ShortTimeUsesTheZoneOffsetOfThatInstant) {
    const DateFormatter cairo{"en_US", *TimeZone::named("Africa/Cairo")};
    EXPECT_EQ(cairo.shortTime(utc(2025, 7, 1, 12, 5)), "3:05\u202fPM");
    const DateFormatter berlin{"de_DE", *TimeZone::named("Europe/Berlin")};
    EXPECT_EQ(berlin.shortTime(utc(2025, 1, 1, 12, 5)), "13:05");
    EXPECT_EQ(berlin.pattern(utc(2025, 10, 31, 23, 30), "MMMM yyyy"), "November 2025");
}

TEST(DateFormatter, StrictParsingRejectsWhatALenientParserWouldRollOver) {
    constexpr const char* pattern = "MM/dd/yyyy HH:mm";
    EXPECT_EQ(parseUTC("04/08/2024 18:17", pattern), utc(2024, 4, 8, 18, 17));
    EXPECT_FALSE(parseUTC("13/08/2024 18:17", pattern));
    EXPECT_FALSE(parseUTC("02/30/2024 18:17", pattern));
    EXPECT_FALSE(parseUTC("04/08/2024 18:17 extra", pattern));
    EXPECT_FALSE(parseUTC("", pattern));
}

}  // namespace
}  // namespace lunoval
