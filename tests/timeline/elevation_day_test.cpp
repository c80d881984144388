#include "timeline/elevation_day.hpp"

#include <gtest/gtest.h>
#include <algorithm>
#include <tuple>
#include <vector>

#include "astro/moon_position.hpp"
#include "astro/test_dates.hpp"

namespace lunoval {
namespace {

using testing::utc;
using testing::zone;

double moonAltitude(Date instant) {
    return Solar::moonPosition(instant, {48.8566, 2.3522}).altitude;
}

TEST(ElevationDay, ThePlaceholderRangeIsTheExtremesOfItsMadeUpDay) {
    double highest = -90;
    double lowest = 90;
    for (int minute = 0; minute < 24 * 60; ++minute) {
        const double altitude =
            placeholderAltitude(utc(2025, 5, 1).addingTimeInterval(minute * 60.0));
        highest = std::max(highest, altitude);
        lowest = std::min(lowest, altitude);
    }
    auto placeholder = MoonWidgetData::placeholder(utc(2025, 5, 1, 8));
    const auto day = elevationDay(placeholder, TimeZone::utc());
    EXPECT_NEAR(day.range.maximum, highest, 1e-9);
    EXPECT_NEAR(day.range.minimum, lowest, 1e-9);
    EXPECT_NEAR(placeholderAltitude(utc(2025, 5, 1, 8)), 50, 1e-9);
    EXPECT_NEAR(day.present.altitude, kPlaceholderPresentAltitude, 1e-9);
}

TEST(ElevationDay, AnUnknownZoneSpansEveryAltitudeAndTheCurveTwoDaysInTenMinuteSteps) {
    const MoonWidgetData record{.latitude = 69.65,
                                .longitude = 18.96,
                                .timezone = "Europe/Atlantis",
                                .selectedTime = utc(2025, 1, 26, 12)};
    const auto day = elevationDay(record, TimeZone::utc());
    EXPECT_EQ(std::pair(day.range.minimum, day.range.maximum), std::pair(-90.0, 90.0));
    ASSERT_EQ(day.curve.size(), 289U);
    EXPECT_EQ(day.curve.front().instant, utc(2025, 1, 25, 12));
    EXPECT_EQ(day.curve.back().instant, utc(2025, 1, 27, 12));
    EXPECT_EQ(day.curve[1].instant, utc(2025, 1, 25, 12, 10));
    EXPECT_EQ(day.noon, utc(2025, 1, 26, 12));
}

TEST(RangeSamples, SkippedHourMovesToItsEndAndRepeatedHourTakesItsFirstPass) {
    const Calendar paris(zone("Europe/Paris"));
    // Index 4·hour + quarter; spring forward skips 02:00-03:00, fall back repeats 02:00-03:00.
    const std::vector<std::tuple<Date, int, Date>> cases{
        {utc(2025, 3, 30, 12), 0, utc(2025, 3, 29, 23)},
        {utc(2025, 3, 30, 12), 7, utc(2025, 3, 30, 0, 45)},
        {utc(2025, 3, 30, 12), 8, utc(2025, 3, 30, 1)},
        {utc(2025, 3, 30, 12), 11, utc(2025, 3, 30, 1)},
        {utc(2025, 3, 30, 12), 12, utc(2025, 3, 30, 1)},
        {utc(2025, 3, 30, 12), 13, utc(2025, 3, 30, 1, 15)},
        {utc(2025, 3, 30, 12), 95, utc(2025, 3, 30, 21, 45)},
        {utc(2025, 10, 26, 12), 8, utc(2025, 10, 26, 0)},
        {utc(2025, 10, 26, 12), 11, utc(2025, 10, 26, 0, 45)},
        {utc(2025, 10, 26, 12), 12, utc(2025, 10, 26, 2)},
    };
    for (const auto& [day, index, expected] : cases) {
        EXPECT_EQ(rangeSampleInstant(paris, day, index), expected) << index;
    }
}

TEST(SampledRange, BracketsTheDayAndKeepsTheInstantsOfItsExtremes) {
    const Calendar paris(zone("Europe/Paris"));
    const Date day = utc(2025, 3, 30, 12);
    const auto range = sampledRange(paris, day, {48.8566, 2.3522});
    for (int index = 0; index < kRangeSamples; ++index) {
        const double altitude = moonAltitude(*rangeSampleInstant(paris, day, index));
        EXPECT_LE(altitude, range.maximum);
        EXPECT_GE(altitude, range.minimum);
    }
    ASSERT_TRUE(range.maximumAt && range.minimumAt);
    EXPECT_EQ(moonAltitude(*range.maximumAt), range.maximum);
    EXPECT_EQ(moonAltitude(*range.minimumAt), range.minimum);
    EXPECT_TRUE(paris.isDateInSameDay(*range.maximumAt, day));
    EXPECT_TRUE(paris.isDateInSameDay(*range.minimumAt, day));
}

TEST(ChartDayStart, FollowsRiseThenSetThenCurrentTime) {
    const Calendar paris(zone("Europe/Paris"));
    const Date rise = utc(2025, 6, 10, 22, 30);  // 00:30 on 11 June in Paris
    const Date set = utc(2025, 6, 12, 9);
    const Date now = utc(2025, 6, 14, 15);
    EXPECT_EQ(chartDayStart(rise, set, now, paris), utc(2025, 6, 10, 22));
    EXPECT_EQ(chartDayStart(std::nullopt, set, now, paris), utc(2025, 6, 11, 22));
    EXPECT_EQ(chartDayStart(std::nullopt, std::nullopt, now, paris), utc(2025, 6, 13, 22));
}

}  // namespace
}  // namespace lunoval
