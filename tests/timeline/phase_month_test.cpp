#include "timeline/phase_month.hpp"

#include <gtest/gtest.h>

#include "astro/test_dates.hpp"

namespace lunoval {
namespace {

using testing::utc;
using testing::zone;
using Principal = MoonPhaseEvent::PhaseType;

// October 2025 with two tabulated phases; the second falls on the 1st in UTC but is named on
// the table's own day, whatever the zone.
std::vector<MoonPhaseEvent> october(int year, int month) {
    if (year != 2025 || month != 10) return {};
    return {{.day = 7, .hour = 3, .minute = 48, .phase = Principal::fullMoon},
            {.day = 31, .hour = 23, .minute = 30, .phase = Principal::firstQuarter}};
}

TEST(PhaseMonth, LaysTheRecordsLocalMonthFromSundayWithTheTablesDaysAndNoonMoons) {
    // 1 October 2025 is a Wednesday; in Tokyo 31 October 20:00 UTC is already 1 November.
    const std::vector<std::tuple<const char*, Date, int, int, int>> cases{
        {"Europe/Paris", utc(2025, 10, 9, 12), 10, 9, 3},
        {"Asia/Tokyo", utc(2025, 10, 31, 20), 11, 1, 6},
    };
    for (const auto& [zoneName, moment, month, today, leading] : cases) {
        const MoonWidgetData record{
            .latitude = 48.85, .longitude = 2.35, .timezone = zoneName, .selectedTime = moment};
        const auto grid = phaseMonth(record, zone(zoneName), october);
        ASSERT_TRUE(grid) << zoneName;
        EXPECT_EQ(std::tuple(grid->year, grid->month, grid->today, grid->leadingDays),
                  std::tuple(2025, month, today, leading));
        EXPECT_EQ(grid->days.size(), month == 10 ? 31U : 30U);
        if (month != 10) continue;
        const auto& full = grid->days[6];
        EXPECT_EQ(full.principalPhase, Principal::fullMoon);
        EXPECT_FALSE(full.phase);
        EXPECT_EQ(grid->days[30].principalPhase, Principal::firstQuarter);
        const auto& ninth = grid->days[8];
        ASSERT_TRUE(ninth.phase);
        EXPECT_FALSE(ninth.principalPhase);
        EXPECT_EQ(ninth.phase->phaseType, Solar::PhaseType::waningGibbous);
        EXPECT_EQ(ninth.phase->tiltAngle, 0.0);
    }
}

}  // namespace
}  // namespace lunoval
