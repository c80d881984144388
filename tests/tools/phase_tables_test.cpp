#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "ephemeris/julian_day.hpp"
#include "phasegen/year_table.hpp"
#include "platform/files.hpp"
#include "platform/property_list.hpp"

namespace lunoval {
namespace {

TEST(GeneratedPhaseTables, CheckedInFilesAreWhatTheGeneratorWrites) {
    for (int year = phasegen::firstTableYear; year <= phasegen::lastTableYear; ++year) {
        const auto file =
            std::filesystem::path(LUNOVAL_PHASE_TABLES) / (std::to_string(year) + ".plist");
        EXPECT_TRUE(readWholeFile(file) == phasegen::yearTableXml(year))
            << file << " differs from the generator's output";
    }
}

// UTC minutes from the U.S. Naval Observatory's phase tables (1900–2050) and from Espenak's
// almanac (2097, 2099), whose ΔT model is the one used here: each phase, both ends of the range,
// found under the month's number in the year's table.
TEST(GeneratedPhaseTables, ListPublishedInstantsToTheMinuteUnderTheirMonth) {
    const std::vector<std::tuple<int, unsigned, const char*>> published = {
        {1900, 1, "1 13:52 NM"},  {1900, 1, "8 05:40 FQ"},  {2000, 1, "21 04:40 FM"},
        {2000, 1, "28 07:57 LQ"}, {2050, 2, "21 15:03 NM"}, {2097, 2, "19 12:07 FQ"},
        {2099, 1, "21 09:07 NM"}};
    for (const auto& [year, month, line] : published) {
        const auto table = plist::parseStringArrayDictionary(phasegen::yearTableXml(year));
        ASSERT_TRUE(table && table->size() == 12) << year;
        EXPECT_EQ(table->at(month - 1).first, std::to_string(month));
        EXPECT_THAT(table->at(month - 1).second, ::testing::Contains(line)) << year << "-" << month;
    }
}

// No phase of 1900–2100 falls in the last half minute of a month, so the carry into the next
// month and year is checked on the conversion itself.
TEST(NearestCalendarMinute, RoundsBeforeSplittingTheDate) {
    using namespace date::literals;
    struct Case {
        double julianDay;
        date::year_month_day date;
        int hour, minute;
    };
    constexpr double second = 1.0 / 86400;
    for (const Case& c : std::to_array<Case>({
             {2451910.5 - 29 * second, 2001_y / 1 / 1, 0, 0},      // 2000-12-31 23:59:31
             {2451910.5 - 31 * second, 2000_y / 12 / 31, 23, 59},  // 2000-12-31 23:59:29
             {2451604.5 - 20 * second, 2000_y / 3 / 1, 0, 0},      // 2000-02-29 23:59:40
             {2451545.0, 2000_y / 1 / 1, 12, 0},                   // J2000.0
             {2415020.5 + 91 * second, 1900_y / 1 / 1, 0, 2},      // 1900-01-01 00:01:31
         })) {
        const ephemeris::CalendarMinute time = ephemeris::nearestCalendarMinute(c.julianDay);
        EXPECT_EQ(std::tuple(time.date, time.hour.count(), time.minute.count()),
                  std::tuple(c.date, c.hour, c.minute))
            << c.date;
    }
}

}  // namespace
}  // namespace lunoval
