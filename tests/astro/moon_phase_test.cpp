#include "astro/moon_phase.hpp"
#include "astro/moon_illumination.hpp"

#include <gtest/gtest.h>

#include "test_dates.hpp"

namespace lunoval::Solar {
namespace {

using lunoval::testing::utc;
using lunoval::testing::zone;
using Event = MoonPhaseEvent;
using Code = MoonPhaseEvent::PhaseType;

// A table holding the given events for one year and month, and nothing else.
PhaseTable tableOf(int year, int month, std::vector<Event> events) {
    return [=](int y, int m) { return y == year && m == month ? events : std::vector<Event>{}; };
}

const PhaseTable kEmptyTable = [](int, int) { return std::vector<Event>{}; };

PhaseType phaseAt(Date date, const char* zoneName, const PhaseTable& table) {
    return moonPhase(date, zone(zoneName), Tilt::none(), {}, table).phaseType;
}

TEST(PhaseType, RawValuesAreTheDisplayedNames) {
    EXPECT_EQ(rawValue(PhaseType::waxingGibbous), "Waxing Gibbous");
    EXPECT_EQ(phaseType("Last Quarter"), PhaseType::lastQuarter);
    EXPECT_FALSE(phaseType("last quarter"));
    EXPECT_FALSE(phaseType("Full moon"));
    EXPECT_FALSE(phaseType(""));
    EXPECT_EQ(caseName(PhaseType::waningCrescent), "waningCrescent");
    EXPECT_EQ(principalPhaseType(Code::firstQuarter), PhaseType::firstQuarter);
    EXPECT_EQ(principalPhaseType(Code::lastQuarter), PhaseType::lastQuarter);
}

TEST(MoonPhase, TheTableDecidesWhateverTheLitFraction) {
    // A thin crescent on 2025-10-23, named as the table says.
    const auto table = tableOf(2025, 10, {{23, 12, 0, Code::fullMoon}});
    const auto phase = moonPhase(utc(2025, 10, 23, 12), zone("UTC"), Tilt::none(), {}, table);
    EXPECT_LT(phase.illumination, 0.1);
    EXPECT_EQ(phase.phaseType, PhaseType::fullMoon);
    EXPECT_EQ(phase.phaseName, "Full Moon");
}

TEST(MoonPhase, AsksForTheLocalMonthsTable) {
    std::vector<std::pair<int, int>> asked;
    const PhaseTable recording = [&](int year, int month) {
        asked.emplace_back(year, month);
        return std::vector<Event>{};
    };
    // 15:30 UTC on 31 December is already New Year's Day in Tokyo.
    (void)phaseAt(utc(2025, 12, 31, 15, 30), "Asia/Tokyo", recording);
    EXPECT_EQ(asked, (std::vector<std::pair<int, int>>{{2026, 1}}));
}

TEST(MoonPhase, OnlyTheDayNumberIsCompared) {
    // October's last event falls on 1 November in Tokyo; it still matches 1 October there.
    const auto table = tableOf(2025, 10, {{31, 23, 50, Code::firstQuarter}});
    EXPECT_EQ(phaseAt(utc(2025, 10, 1, 3), "Asia/Tokyo", table), PhaseType::firstQuarter);
}

TEST(MoonPhase, TiltOnlyWhenAskedFor) {
    const Date date = utc(2025, 10, 12, 21);
    const auto untilted = moonPhase(date, zone("UTC"), Tilt::none(), {45, 7}, kEmptyTable);
    EXPECT_EQ(untilted.tiltAngle, 0.0);
    const auto tilted = moonPhase(date, zone("UTC"), Tilt::at(date), {45, 7}, kEmptyTable);
    EXPECT_EQ(tilted.tiltAngle, moonTilt(date, {45, 7}));
    EXPECT_EQ(tilted.illumination, untilted.illumination);
}

TEST(MoonPhase, AnInstantWithoutACalendarFormTiltsAtTheDateItself) {
    // Beyond the calendar the tilt is taken at the date, whatever tilt date was asked for.
    const Date farOff = Date::fromTimeIntervalSince1970(1e13);
    const auto phase =
        moonPhase(farOff, zone("UTC"), Tilt::atTransitNearest(farOff), {30, 30}, kEmptyTable);
    EXPECT_EQ(phase.tiltAngle, moonTilt(farOff, {30, 30}));
    EXPECT_EQ(phase.phaseName, rawValue(phase.phaseType));
}

}  // namespace
}  // namespace lunoval::Solar
