#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>

#include "astro/coordinates.hpp"
#include "astro/moon_illumination.hpp"
#include "astro/moon_position.hpp"
#include "test_dates.hpp"

namespace lunoval::Solar {
namespace {

using lunoval::testing::utc;

TEST(MoonPosition, StandsDueSouthAtUpperTransitNorthOfTheTropics) {
    const Date transit = moonTransit(utc(2025, 10, 7, 0), {51.4769, -0.0005});
    const auto position = moonPosition(transit, {51.4769, -0.0005});
    EXPECT_NEAR(position.azimuth, 180, 1.0);
    EXPECT_GT(position.altitude, 0);
    // South of the moon's path the transit is due north.
    const Date southern = moonTransit(utc(2025, 10, 7, 0), {-60, 10});
    const double azimuth = moonPosition(southern, {-60, 10}).azimuth;
    EXPECT_LT(std::min(azimuth, 360 - azimuth), 1.0);
}

TEST(MoonTransit, IsTheNearestUpperTransit) {
    const double latitude = 40;
    const double longitude = -74;
    const Date from = utc(2025, 10, 7, 0);
    const Date transit = moonTransit(from, {latitude, longitude});
    // Upper transits come about 24 h 50 min apart, so the nearest is within about half that.
    EXPECT_LT(std::fabs(transit.timeIntervalSince1970() - from.timeIntervalSince1970()),
              12.5 * 3600);
    const double days = daysSinceJ2000(transit);
    const auto moon =
        topocentricMoon(days, radians(latitude), siderealAngle(days) + radians(longitude));
    EXPECT_NEAR(moon.hourAngle, 0, 1e-9);
}

struct PublishedPhase {
    Date instant;
    double fraction;
    bool waxing;
};

class MoonIlluminationAtPublishedPhases : public ::testing::TestWithParam<PublishedPhase> {};

TEST_P(MoonIlluminationAtPublishedPhases, MatchesTheLitFraction) {
    const auto& c = GetParam();
    const auto illumination = moonIllumination(c.instant);
    EXPECT_NEAR(illumination.fraction, c.fraction, 0.02);
    EXPECT_EQ(MoonIllumination::illuminationForDate(c.instant), illumination.fraction);
    if (c.fraction > 0.02 && c.fraction < 0.98) {
        EXPECT_EQ(illumination.phaseAngle > 0, c.waxing);
    }
    EXPECT_LE(std::fabs(illumination.phaseAngle), 180);
}

INSTANTIATE_TEST_SUITE_P(Almanac, MoonIlluminationAtPublishedPhases,
                         ::testing::Values(PublishedPhase{utc(2024, 4, 8, 18, 21), 0.0, true},
                                           PublishedPhase{utc(2025, 10, 7, 3, 48), 1.0, false},
                                           PublishedPhase{utc(2025, 10, 29, 16, 21), 0.5, true},
                                           PublishedPhase{utc(2025, 10, 13, 18, 13), 0.5, false}));

TEST(MoonTilt, AtTheNearestTransitIsTheTiltAtThatTransit) {
    const Date now = utc(2025, 10, 7, 0);
    const Observer paris{48.85, 2.35};
    const double expected = moonTilt(moonTransit(now, paris), paris);
    EXPECT_EQ(tiltAngle(Tilt::atTransitNearest(now), paris), expected);
    EXPECT_NE(tiltAngle(Tilt::at(now), paris), expected);
    EXPECT_EQ(tiltAngle(Tilt::none(), paris), 0.0);
}

}  // namespace
}  // namespace lunoval::Solar
