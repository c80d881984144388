#include "astro/coordinates.hpp"

#include <gtest/gtest.h>
#include <cmath>

namespace lunoval::Solar {
namespace {

double degreesInOneTurn(double radians) {
    const double d = std::fmod(degrees(radians), 360.0);
    return d < 0 ? d + 360 : d;
}

TEST(DayNumber, CountsFromNoonOfFirstJanuary2000) {
    EXPECT_EQ(daysSinceJ2000(Date::fromTimeIntervalSince1970(946728000)), 0.0);
    EXPECT_EQ(dateFromDays(0).timeIntervalSince1970(), 946728000);
    EXPECT_EQ(daysSinceJ2000(Date::fromTimeIntervalSince1970(946728000 + 86400 * 1.5)), 1.5);
    EXPECT_EQ(daysSinceJ2000(Date::fromTimeIntervalSince1970(0)), -10957.5);
}

TEST(SunCoordinates, MatchTheEpochValues) {
    const auto sun = sunCoordinates(0);
    EXPECT_NEAR(degreesInOneTurn(sun.rightAscension), 281.2927, 5e-5);
    EXPECT_NEAR(degrees(sun.declination), -23.0336, 5e-5);
}

TEST(Refraction, BelowTheHorizonIsThatOfTheHorizon) {
    EXPECT_NEAR(refracted(-0.5) - (-0.5), 0.0084467, 1e-7);
    EXPECT_NEAR(refracted(-1.2) - (-1.2), 0.0084467, 1e-7);
    EXPECT_NEAR(refracted(0.0), 0.0084467, 1e-7);
    // High up refraction fades to almost nothing.
    EXPECT_LT(refracted(1.5) - 1.5, 3e-5);
}

}  // namespace
}  // namespace lunoval::Solar
