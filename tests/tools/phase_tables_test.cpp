#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "ephemeris/delta_t.hpp"
#include "ephemeris/julian_day.hpp"
#include "ephemeris/principal_phases.hpp"
#include "phasegen/phase_events.hpp"
#include "phasegen/year_table.hpp"
#include "platform/files.hpp"
#include "platform/property_list.hpp"
#include "temp_folder.hpp"

namespace lunoval {
namespace {

using ephemeris::PrincipalPhase;
using phasegen::firstTableYear;
using phasegen::lastTableYear;

const std::filesystem::path checkedInTables = LUNOVAL_PHASE_TABLES;

std::filesystem::path tableFile(int year) {
    return checkedInTables / (std::to_string(year) + ".plist");
}

std::vector<std::string> generatedLines(int year, unsigned month) {
    std::vector<std::string> lines;
    for (const phasegen::PhaseEvent& event : phasegen::phaseEventsOfYear(year)) {
        if (event.time.date.month() == date::month(month))
            lines.push_back(phasegen::eventLine(event));
    }
    return lines;
}

TEST(GeneratedPhaseTables, CheckedInFilesAreWhatTheGeneratorWrites) {
    for (int year = firstTableYear; year <= lastTableYear; ++year) {
        EXPECT_TRUE(readWholeFile(tableFile(year)) == phasegen::yearTableXml(year))
            << tableFile(year) << " differs from the generator's output";
    }
}

struct PublishedPhase {
    int year;
    unsigned month;
    const char* line;
};

// UTC minutes from the U.S. Naval Observatory's phase tables (1900–2050) and from Espenak's
// almanac (2097, 2099), whose ΔT model is the one used here: each phase, both ends of the range.
constexpr auto publishedPhases = std::to_array<PublishedPhase>({
    {1900, 1, "1 13:52 NM"},
    {1900, 1, "8 05:40 FQ"},
    {2000, 1, "21 04:40 FM"},
    {2000, 1, "28 07:57 LQ"},
    {2050, 2, "21 15:03 NM"},
    {2097, 2, "19 12:07 FQ"},
    {2099, 1, "21 09:07 NM"},
});

TEST(GeneratedPhaseTables, MatchPublishedInstantsToTheMinute) {
    for (const PublishedPhase& published : publishedPhases) {
        EXPECT_THAT(generatedLines(published.year, published.month),
                    ::testing::Contains(published.line))
            << published.year << "-" << published.month;
    }
}

TEST(PrincipalPhase, ReproducesMeeusWorkedExamples) {
    struct Example {
        std::int64_t phaseNumber;
        PrincipalPhase phase;
        double julianEphemerisDay;
    };
    // New moon of 1977 February (k = −283) and last quarter of 2044 January (k = 544.75).
    const auto examples = std::to_array<Example>({
        {std::int64_t{-283} * 4, PrincipalPhase::newMoon, 2443192.65118},
        {std::int64_t{544} * 4 + 3, PrincipalPhase::lastQuarter, 2467636.49186},
    });
    for (const Example& example : examples) {
        const ephemeris::PhaseInstant instant = ephemeris::principalPhase(example.phaseNumber);
        EXPECT_EQ(instant.phase, example.phase);
        EXPECT_NEAR(instant.julianEphemerisDay, example.julianEphemerisDay, 0.000006);
    }
}

TEST(DeltaT, AgreesWithObservedValues) {
    struct Observed {
        double year;
        double seconds;
    };
    // An observed year in most of the expressions' spans; continuity ties in the rest.
    const auto observed = std::to_array<Observed>({
        {1900.0, -2.72},
        {1950.0, 29.15},
        {1970.0, 40.18},
        {1990.0, 56.86},
        {2021.0, 69.36},
    });
    for (const Observed& value : observed) {
        EXPECT_NEAR(ephemeris::deltaTSeconds(value.year), value.seconds, 0.2) << value.year;
    }
}

TEST(DeltaT, IsContinuousWhereOneExpressionHandsOverToTheNext) {
    for (const double year : {1920.0, 1941.0, 1961.0, 1986.0, 2005.0, 2025.0, 2050.0}) {
        EXPECT_NEAR(ephemeris::deltaTSeconds(year), ephemeris::deltaTSeconds(year - 1e-6), 0.1)
            << year;
    }
}

// No phase of 1900–2100 falls in the last half minute of a month, so the carry into the next
// month and year is checked on the conversion itself.
TEST(NearestCalendarMinute, RoundsBeforeSplittingTheDate) {
    using namespace date::literals;
    struct Case {
        double julianDay;
        date::year_month_day date;
        int hour;
        int minute;
    };
    constexpr double second = 1.0 / 86400;
    const auto cases = std::to_array<Case>({
        {2451910.5 - 29 * second, 2001_y / 1 / 1, 0, 0},      // 2000-12-31 23:59:31
        {2451910.5 - 31 * second, 2000_y / 12 / 31, 23, 59},  // 2000-12-31 23:59:29
        {2451604.5 - 20 * second, 2000_y / 3 / 1, 0, 0},      // 2000-02-29 23:59:40
        {2451545.0, 2000_y / 1 / 1, 12, 0},                   // J2000.0
        {2415020.5 + 91 * second, 1900_y / 1 / 1, 0, 2},      // 1900-01-01 00:01:31
    });
    for (const Case& c : cases) {
        const ephemeris::CalendarMinute time = ephemeris::nearestCalendarMinute(c.julianDay);
        EXPECT_EQ(time.date, c.date) << c.date;
        EXPECT_EQ(time.hour.count(), c.hour) << c.date;
        EXPECT_EQ(time.minute.count(), c.minute) << c.date;
    }
}

// One year shows the writer's layout; the generator's events show every year's contents.
TEST(GeneratedPhaseTables, AYearListsEachMonthsLinesUnderItsNumber) {
    const auto table = plist::parseStringArrayDictionary(phasegen::yearTableXml(2024));
    ASSERT_TRUE(table);
    ASSERT_EQ(table->size(), 12U);
    for (unsigned month = 1; month <= 12; ++month) {
        EXPECT_EQ(table->at(month - 1).first, std::to_string(month));
        EXPECT_EQ(table->at(month - 1).second, generatedLines(2024, month)) << month;
    }
}

TEST(WriteYearTables, FailsNamingTheFileItCannotWrite) {
    const testing::TempFolder folder("lunoval-tables");
    std::filesystem::create_directories(folder.path() / "2001.plist");
    try {
        phasegen::writeYearTables(folder.path(), 2000, 2001);
        ADD_FAILURE() << "writing over a folder succeeded";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("2001.plist"));
    }
}

}  // namespace
}  // namespace lunoval
