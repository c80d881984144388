#include <gtest/gtest.h>

#include <plist/plist.h>
#include <filesystem>
#include <fstream>
#include "astro/test_dates.hpp"
#include "temp_folder.hpp"

#include "phases/moon_phase_data_manager.hpp"
#include "phases/phase_table_parser.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;
using Code = MoonPhaseEvent::PhaseType;
using testing::utc;

std::string xmlYear(const std::string& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>)" +
           body + "</dict></plist>\n";
}

std::string month(const std::string& key, const std::vector<std::string>& lines) {
    std::string xml = "<key>" + key + "</key><array>";
    for (const auto& line : lines) xml += "<string>" + line + "</string>";
    return xml + "</array>";
}

// Two bundles in a fresh folder; each test writes the year files it needs.
class PhaseTables : public ::testing::Test {
  protected:
    void write(std::string_view bundle, int year, const std::string& bytes) {
        const auto folder = root_ / bundle / "Data";
        fs::create_directories(folder);
        std::ofstream(folder / (std::to_string(year) + ".plist"), std::ios::binary) << bytes;
    }
    void makeBundle(std::string_view bundle) { fs::create_directories(root_ / bundle); }

    MoonPhaseDataManager manager() { return MoonPhaseDataManager(BundleLocator{{root_}}); }

    lunoval::testing::TempFolder temp_{"lunoval-phases"};
    const std::filesystem::path& root_ = temp_.path();
};

template <typename F>
std::string loggedBy(F action) {
    ::testing::internal::CaptureStdout();
    action();
    return ::testing::internal::GetCapturedStdout();
}

TEST(PhaseTableParser, ReadsIntegersAsSignedDecimalsOnly) {
    for (const auto& [text, value] : {std::pair{"12", 12LL},
                                      {"+7", 7LL},
                                      {"-1", -1LL},
                                      {"007", 7LL},
                                      {"9223372036854775807", 9223372036854775807LL}}) {
        EXPECT_EQ(parseInteger(text), value) << text;
    }
    for (const char* bad : {"", "+", "+-1", " 1", "1 ", "Jan", "1.0", "9223372036854775808"}) {
        EXPECT_FALSE(parseInteger(bad)) << bad;
    }
}

TEST(PhaseTableParser, ReadsEventsOfExactlyThreeSingleSpacedFields) {
    const MoonPhaseEvent full{.day = 6, .hour = 18, .minute = 15, .phase = Code::fullMoon};
    EXPECT_EQ(parsePhaseEvent("6 18:15 FM"), full);
    EXPECT_EQ(parsePhaseEvent("+6 -1:75 LQ"),
              (MoonPhaseEvent{.day = 6, .hour = -1, .minute = 75, .phase = Code::lastQuarter}));
    for (const char* bad : {"6 18:15", "6 18:15 FM extra", "6 18:15 XX", "6 18:15:30 FM",
                            "6  18:15 FM", "6 18: FM", "6 1815 FM", " 6 18:15 FM", "6 18:15 fm"}) {
        EXPECT_FALSE(parsePhaseEvent(bad)) << bad;
    }
}

TEST_F(PhaseTables, KeepsUsableEventsAndAnyNumericMonthKey) {
    write(kFrameworkBundleIdentifier, 2031,
          xmlYear(month("1", {"6 18:15 FM", "6 18:15", "13 03:00 LQ", "bad"}) +
                  month("13", {"1 00:00 NM"}) + month("-1", {}) + month("Jan", {"2 02:02 NM"})));
    auto phases = manager();
    const auto year = phases.loadYear(2031);
    ASSERT_TRUE(year);
    EXPECT_EQ(year->size(), 3U);
    EXPECT_EQ(phases.events(2031, 1), (std::vector<MoonPhaseEvent>{{6, 18, 15, Code::fullMoon},
                                                                   {13, 3, 0, Code::lastQuarter}}));
    EXPECT_EQ(year->at(13).size(), 1U);
    EXPECT_TRUE(year->at(-1).empty());
    EXPECT_TRUE(phases.events(2031, 2).empty());
}

TEST_F(PhaseTables, ReadsBinaryPropertyLists) {
    plist_t root = plist_new_dict();
    plist_t march = plist_new_array();
    plist_array_append_item(march, plist_new_string("14 06:55 FM"));
    plist_dict_set_item(root, "3", march);
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    write(kFrameworkBundleIdentifier, 2032, std::string(bytes, length));
    std::free(bytes);  // NOLINT(*-no-malloc)
    plist_free(root);
    EXPECT_EQ(manager().events(2032, 3),
              (std::vector<MoonPhaseEvent>{{14, 6, 55, Code::fullMoon}}));
}

TEST_F(PhaseTables, RejectsFilesOfAnyOtherShape) {
    const std::vector<std::pair<int, std::string>> files{
        {2033, R"(<plist version="1.0"><array><string>1 00:00 NM</string></array></plist>)"},
        {2034, xmlYear("<key>1</key><array><integer>5</integer></array>")},
        {2035, xmlYear("<key>1</key><string>6 18:15 FM</string>")},
        {2036, "not a property list"},
    };
    for (const auto& [year, bytes] : files) write(kFrameworkBundleIdentifier, year, bytes);
    auto phases = manager();
    for (const auto& [year, bytes] : files) {
        const auto log = loggedBy([&, year = year] { EXPECT_FALSE(phases.loadYear(year)); });
        EXPECT_EQ(log,
                  "✅ Found plist in bundle: com.orvane.Orvane with subdirectory\n"
                  "❌ Could not load or parse " +
                      std::to_string(year) + ".plist\n");
    }
}

TEST_F(PhaseTables, SearchesTheFrameworkFirstThenTheHostApp) {
    write(kHostAppBundleIdentifier, 2037, xmlYear(month("1", {"1 01:00 NM"})));
    makeBundle(kFrameworkBundleIdentifier);
    auto phases = manager();
    EXPECT_EQ(loggedBy([&] { phases.loadYear(2037); }),
              "✅ Found plist in bundle: com.orvane.Lunoval with subdirectory\n");
    write(kFrameworkBundleIdentifier, 2038, xmlYear(month("1", {"2 02:00 NM"})));
    write(kHostAppBundleIdentifier, 2038, xmlYear(month("1", {"3 03:00 NM"})));
    EXPECT_EQ(manager().events(2038, 1).front().day, 2);
}

TEST_F(PhaseTables, AMissingYearIsSearchedForAgainOnEveryCall) {
    makeBundle(kFrameworkBundleIdentifier);
    makeBundle(kHostAppBundleIdentifier);
    auto phases = manager();
    const std::string expected =
        "❌ Could not find 2040.plist in any bundle\n"
        "   Tried bundles: [\"com.orvane.Orvane\", \"com.orvane.Lunoval\"]\n";
    EXPECT_EQ(loggedBy([&] { EXPECT_TRUE(phases.events(2040, 1).empty()); }), expected);
    EXPECT_EQ(loggedBy([&] { EXPECT_FALSE(phases.nextPhase(utc(2040, 1, 1), TimeZone::utc())); }),
              expected);
    EXPECT_EQ(
        loggedBy([] { MoonPhaseDataManager(BundleLocator{{"/nonexistent"}}).loadYear(2040); }),
        "❌ Could not find 2040.plist in any bundle\n   Tried bundles: []\n");
}

TEST_F(PhaseTables, AYearIsReadOnceAndKept) {
    write(kFrameworkBundleIdentifier, 2041, xmlYear(month("5", {"4 04:04 FQ"})));
    auto phases = manager();
    EXPECT_FALSE(loggedBy([&] { phases.events(2041, 5); }).empty());
    fs::remove_all(root_);
    EXPECT_EQ(loggedBy([&] { EXPECT_EQ(phases.events(2041, 5).size(), 1U); }), "");
    EXPECT_EQ(loggedBy([&] { EXPECT_TRUE(phases.events(2041, 6).empty()); }), "");
}

TEST_F(PhaseTables, NextPhaseLooksOnlyAtTheLocalMonthByLocalDay) {
    // Day order differs from file order; two events share day 20 with the later hour first.
    write(kFrameworkBundleIdentifier, 2042,
          xmlYear(month("3", {"20 22:00 LQ", "1 00:30 NM", "8 23:30 FQ", "20 01:00 FM"}) +
                  month("4", {"30 23:50 NM"})));
    struct Case {
        const char* name;
        Date query;
        const char* zone;
        std::optional<MoonPhaseEvent> expected;
        std::int64_t daysUntil;
    };
    const std::vector<Case> cases{
        {"an event earlier the same day still counts", utc(2042, 3, 8, 23, 45), "UTC",
         MoonPhaseEvent{8, 23, 30, Code::firstQuarter}, 0},
        {"the first of two same-day events in file order wins", utc(2042, 3, 10), "UTC",
         MoonPhaseEvent{20, 22, 0, Code::lastQuarter}, 10},
        {"after the month's last event there is none", utc(2042, 3, 30), "UTC", std::nullopt, 0},
        // 00:30 UTC on 1 March is still 28 February in New York: compared as day 28.
        {"an event on the previous month's last local day", utc(2042, 3, 5, 12), "America/New_York",
         MoonPhaseEvent{1, 0, 30, Code::newMoon}, 23},
        // 23:30 UTC on the 8th is the 9th in Tokyo.
        {"an event that is the next local day east of UTC", utc(2042, 3, 8, 12), "Asia/Tokyo",
         MoonPhaseEvent{8, 23, 30, Code::firstQuarter}, 1},
        // April's event is 1 May in Tokyo: compared as day 1, behind the 29th.
        {"an event that lands in the next month locally", utc(2042, 4, 29, 3), "Asia/Tokyo",
         std::nullopt, 0},
        {"a month without a table", utc(2042, 5, 1), "UTC", std::nullopt, 0},
    };
    auto phases = manager();
    for (const auto& [name, query, zone, expected, daysUntil] : cases) {
        const auto next = phases.nextPhase(query, *TimeZone::named(zone));
        ASSERT_EQ(next.has_value(), expected.has_value()) << name;
        if (!next) continue;
        EXPECT_EQ(next->event, *expected) << name;
        EXPECT_EQ(next->daysUntil, daysUntil) << name;
    }
}

TEST(EventDate, IsTheTablesUtcWallClockTime) {
    EXPECT_EQ(MoonPhaseDataManager::eventDate(2025, 10, 7, 3, 48), utc(2025, 10, 7, 3, 48));
    EXPECT_EQ(MoonPhaseDataManager::eventDate(2025, 12, 31, 24, 0), utc(2026, 1, 1));
}

}  // namespace
}  // namespace lunoval
