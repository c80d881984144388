#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include "temp_folder.hpp"

#include "phases/moon_phase_data_manager.hpp"
#include "phases/phase_table_parser.hpp"

namespace lunoval {
namespace {

using Code = MoonPhaseEvent::PhaseType;

std::string xmlYear(const std::string& body) {
    return R"(<plist version="1.0"><dict>)" + body + "</dict></plist>";
}

std::string month(const std::string& key, const std::vector<std::string>& lines) {
    std::string xml = "<key>" + key + "</key><array>";
    for (const auto& line : lines) xml += "<string>" + line + "</string>";
    return xml + "</array>";
}

// A month key that is no number and a line that does not read as three single-spaced fields
// of signed decimals are skipped; anything but a dictionary of string arrays is no table.
TEST(PhaseTableParser, KeepsTheUsableLinesOfDictionariesOfStringArraysOnly) {
    const std::vector<std::string> lines = {
        "6 18:15 FM", "+6 -1:75 LQ", "007 0:0 NM", "9223372036854775807 0:0 FQ",
        // and none of these
        "6 18:15", "6 18:15 FM extra", "6 18:15 XX", "6 18:15 fm", "6 18:15:30 FM", "6  18:15 FM",
        " 6 18:15 FM", "6 18: FM", "6 1815 FM", "+-1 0:0 NM", "+ 0:0 NM", "1.0 0:0 NM",
        "9223372036854775808 0:0 NM"};
    const PhaseYear usable = {{-1, {{1, 0, 0, Code::newMoon}}},
                              {1,
                               {{6, 18, 15, Code::fullMoon},
                                {6, -1, 75, Code::lastQuarter},
                                {7, 0, 0, Code::newMoon},
                                {INT64_MAX, 0, 0, Code::firstQuarter}}},
                              {13, {}}};
    EXPECT_EQ(
        parsePhaseYear(xmlYear(month("1", lines) + month("-1", {"1 00:00 NM"}) + month("13", {}) +
                               month("Jan", {"2 02:02 NM"}) + month("+-1", {"2 02:02 NM"}))),
        usable);
    for (const auto& other : std::vector<std::string>{
             R"(<plist version="1.0"><array><string>1 00:00 NM</string></array></plist>)",
             xmlYear("<key>1</key><array><integer>5</integer></array>"),
             xmlYear("<key>1</key><string>6 18:15 FM</string>"), "not a property list", ""}) {
        EXPECT_FALSE(parsePhaseYear(other)) << other;
    }
}

class PhaseTables : public ::testing::Test {
  protected:
    void write(std::string_view bundle, int year, const std::string& bytes) {
        const auto folder = root_ / bundle / "Data";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (std::to_string(year) + ".plist"), std::ios::binary) << bytes;
    }

    lunoval::testing::TempFolder temp_{"lunoval-phases"};
    const std::filesystem::path& root_ = temp_.path();
};

// A year missing or unreadable is looked for again on the next call; one read is kept.
TEST_F(PhaseTables, TakesTheFrameworksYearFirstAndKeepsOnlyWhatItRead) {
    write(kHostAppBundleIdentifier, 2037, xmlYear(month("1", {"1 01:00 NM"})));
    write(kFrameworkBundleIdentifier, 2038, xmlYear(month("1", {"2 02:00 NM"})));
    write(kHostAppBundleIdentifier, 2038, xmlYear(month("1", {"3 03:00 NM"})));
    write(kFrameworkBundleIdentifier, 2039, "not a property list");
    MoonPhaseDataManager phases(BundleLocator{{root_}});
    EXPECT_EQ(phases.events(2037, 1).at(0).day, 1);
    EXPECT_EQ(phases.events(2038, 1).at(0).day, 2);
    EXPECT_TRUE(phases.events(2039, 1).empty());
    EXPECT_TRUE(phases.events(2040, 1).empty());
    write(kFrameworkBundleIdentifier, 2040, xmlYear(month("1", {"4 04:00 FQ"})));
    EXPECT_EQ(phases.events(2040, 1).size(), 1U);
    std::filesystem::remove_all(root_);
    EXPECT_EQ(phases.events(2040, 1).size(), 1U);
    EXPECT_TRUE(phases.events(2040, 2).empty());
}

}  // namespace
}  // namespace lunoval
