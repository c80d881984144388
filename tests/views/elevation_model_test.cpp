#include "views/elevation_model.hpp"

#include <gtest/gtest.h>
#include <vector>

#include "astro/test_dates.hpp"

namespace lunoval {
namespace {

using testing::utc;

constexpr ui::Size kChart{200, 100};

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
    std::vector<AltitudeSample> samples;
    for (int i = 0; i <= 288; ++i) {
        const Date t = start.addingTimeInterval(-43'200 + i * 600.0);
        samples.push_back({t, t < noon ? 500.0 : -500.0});
    }
    const auto points = curvePoints(scale, samples);

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
