#include "views/elevation_model.hpp"

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

constexpr ui::Size kChart{200, 100};

TEST(CompactMoonAltitude, IsNearTheObservedMoon) {
    // Topocentric apparent altitudes from PyEphem 4.1.4. The one-term series and the missing
    // parallax leave up to about three degrees; a wrong sign or angle is off by tens.
    const std::vector<std::tuple<Date, double, double, double>> cases{
        {utc(2024, 4, 8, 18, 17), 32.78, -96.80, 64.56},
        {utc(2025, 3, 30, 21), 48.8566, 2.3522, -7.78},
        {utc(2023, 12, 25, 12), -33.8688, 151.2093, 28.17},
        {utc(2030, 6, 21), 69.6492, 18.9553, 8.78},
        {utc(2019, 7, 16, 21, 30), -22.9, -43.2, 14.25},
    };
    for (const auto& [instant, latitude, longitude, observed] : cases) {
        EXPECT_NEAR(compactMoonAltitude(instant, latitude, longitude), observed, 3.0)
            << instant.timeIntervalSince1970();
    }
}

TEST(CompactMoonAltitude, MatchesTheEngineItsSeriesComesFrom) {
    // The engine's position uses the same series without parallax, so the two agree exactly
    // wherever the chart's curve meets its markers.
    for (int day = 0; day < 400; day += 7) {
        for (const auto& [latitude, longitude] :
             std::vector<std::pair<double, double>>{{48.85, 2.35}, {-33.9, 151.2}, {78.2, 15.6}}) {
            const Date instant = utc(2025, 1, 1).addingTimeInterval(day * 86'400.0 + day * 977.0);
            EXPECT_NEAR(compactMoonAltitude(instant, latitude, longitude),
                        Solar::moonPosition(instant, latitude, longitude).altitude, 1e-9);
        }
    }
}

TEST(Placeholder, RangeIsTheExtremesOfItsDay) {
    double highest = -90;
    double lowest = 90;
    for (int minute = 0; minute < 24 * 60; ++minute) {
        const double altitude =
            placeholderAltitude(utc(2025, 5, 1).addingTimeInterval(minute * 60.0));
        highest = std::max(highest, altitude);
        lowest = std::min(lowest, altitude);
    }
    EXPECT_NEAR(placeholderRange().maximum, highest, 1e-9);
    EXPECT_NEAR(placeholderRange().minimum, lowest, 1e-9);
    EXPECT_NEAR(placeholderAltitude(utc(2025, 5, 1, 8)), 50, 1e-9);
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
    const auto range = sampledRange(paris, day, 48.8566, 2.3522);
    for (int index = 0; index < kRangeSamples; ++index) {
        const double altitude =
            compactMoonAltitude(*rangeSampleInstant(paris, day, index), 48.8566, 2.3522);
        EXPECT_LE(altitude, range.maximum);
        EXPECT_GE(altitude, range.minimum);
    }
    ASSERT_TRUE(range.maximumAt && range.minimumAt);
    EXPECT_EQ(compactMoonAltitude(*range.maximumAt, 48.8566, 2.3522), range.maximum);
    EXPECT_EQ(compactMoonAltitude(*range.minimumAt, 48.8566, 2.3522), range.minimum);
    EXPECT_TRUE(paris.isDateInSameDay(*range.maximumAt, day));
    EXPECT_TRUE(paris.isDateInSameDay(*range.minimumAt, day));
}

TEST(ChartRange, ChoosesPlaceholderFullOrSampled) {
    const Date day = utc(2025, 1, 26, 12);
    const ElevationScale placeholder(chartRange(true, std::nullopt, day, 0, 0), day, kChart);
    EXPECT_EQ(std::pair(placeholder.lowest(), placeholder.highest()), std::pair(-25.0, 55.0));
    const ElevationScale unknown(chartRange(false, std::nullopt, day, 69.65, 18.96), day, kChart);
    EXPECT_EQ(std::pair(unknown.lowest(), unknown.highest()), std::pair(-95.0, 95.0));
    EXPECT_EQ(unknown.horizonY(), kChart.height / 2);
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

TEST(ElevationScale, MapsAltitudeIntoTheMarginsAndClampsAndSpreadsTheDayAcrossTheWidth) {
    const Date start = utc(2025, 1, 1);
    const ElevationScale scale({.maximum = 40, .minimum = -20}, start, kChart);
    const std::vector<std::pair<double, double>> cases{
        {-25, 92}, {45, 8}, {10, 50}, {0, 62}, {-90, 92}, {120, 8},
    };
    for (const auto& [altitude, y] : cases) EXPECT_DOUBLE_EQ(scale.y(altitude), y) << altitude;
    EXPECT_EQ(scale.x(start), 0);
    EXPECT_EQ(scale.x(start.addingTimeInterval(21'600)), 50);
    EXPECT_EQ(scale.x(start.addingTimeInterval(86'400)), 200);
    EXPECT_EQ(scale.x(start.addingTimeInterval(-43'200)), -100);
}

TEST(CurvePoints, CoverSixHoursEitherSideInTimeOrderAndClamp) {
    const Date start = utc(2025, 1, 1);
    const ElevationScale scale({.maximum = 40, .minimum = -20}, start, kChart);
    // Far beyond the range before noon of the day, far below after.
    const Date noon = start.addingTimeInterval(43'200);
    const auto points = curvePoints(scale, [&](Date t) { return t < noon ? 500.0 : -500.0; });

    ASSERT_EQ(points.size(), 36u * 6 + 1);
    EXPECT_EQ(points.front().x, -50);
    EXPECT_EQ(points.back().x, 250);
    for (std::size_t i = 1; i < points.size(); ++i) EXPECT_GT(points[i].x, points[i - 1].x);
    for (const auto& point : points) {
        EXPECT_EQ(point.y, point.x < 100 ? 8 : 92) << point.x;
    }
}

}  // namespace
}  // namespace lunoval
