#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include "temp_folder.hpp"

#include "cli/run_command.hpp"

namespace lunoval {
namespace {

using testing::runLunoval;
namespace fs = std::filesystem;

// Instants of greatest eclipse.
constexpr const char* kEclipses =
    "04/20/2023 04:17,HSE\n"
    "04/08/2024 18:17,TSE\n"
    "10/02/2024 18:45,ASE\n"
    "03/14/2025 06:59,TLE\n";

constexpr double kTotalSolar2024 = 1712600220;  // 2024-04-08 18:17 UTC

// A resource root whose framework bundle holds `catalogue` (none when absent).
class EclipsesCommand : public ::testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(root_ / "com.orvane.Orvane" / "Data");
        fs::create_directories(root_ / "com.orvane.Lunoval");
    }

    void write(const std::string& catalogue) {
        std::ofstream(root_ / "com.orvane.Orvane" / "Data" / "events.txt") << catalogue;
    }

    testing::CommandResult eclipses(const std::string& arguments) {
        return runLunoval("eclipses " + arguments, "LUNOVAL_RESOURCE_PATH=" + root_.string());
    }

    lunoval::testing::TempFolder temp_{"lunoval-eclipses"};
    const std::filesystem::path& root_ = temp_.path();
};

TEST_F(EclipsesCommand, RejectsBadInputWithOneLineAndStatusTwo) {
    write(kEclipses);
    for (const char* arguments : {
             "--from 0",
             "--to 10000",
             "--from 2025 --to 2024",
             "--from twenty",
             "--lat 32.78",
             "--lng -96.8",
             "--lat 90.5 --lng 0",
             "--lat 0 --lng -180.5",
             "--json --from 2030 --to 2029",
         }) {
        const auto run = eclipses(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_TRUE(run.out.empty()) << arguments;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << arguments << run.err;
        EXPECT_TRUE(run.err.starts_with("lunoval: ")) << arguments << run.err;
    }
}

struct Listed {
    std::string key;
    bool isVisible;
};

TEST_F(EclipsesCommand, PrintsTheRangeAsJsonWithVisibilityFromThePlace) {
    write(kEclipses);
    const std::vector<std::pair<std::string, std::vector<Listed>>> cases{
        {"--lat 32.78 --lng -96.80 --timezone America/Chicago",
         {{"TSE", true}, {"ASE", true}, {"TLE", true}}},
        {"--lat 35.68 --lng 139.77 --timezone Asia/Tokyo",
         {{"TSE", false}, {"ASE", false}, {"TLE", false}}},
    };
    for (const auto& [place, expected] : cases) {
        const auto run = eclipses("--from 2024 --to 2025 --json " + place);
        ASSERT_EQ(run.status, 0) << run.err;
        const auto listed = nlohmann::json::parse(run.out);
        ASSERT_EQ(listed.size(), expected.size()) << place;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(listed[i].at("key"), expected[i].key) << place;
            EXPECT_EQ(listed[i].at("isVisible"), expected[i].isVisible) << place << " " << i;
        }
    }
}

TEST_F(EclipsesCommand, WritesEachEclipseAsOneObject) {
    write(kEclipses);
    const auto run = eclipses("--from 2024 --to 2024 --json");
    ASSERT_EQ(run.status, 0) << run.err;
    const auto listed = nlohmann::json::parse(run.out);
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[0], nlohmann::json::parse(R"({"key": "TSE", "title": "Total Solar Eclipse",
        "datetime": 1712600220.0, "isLunarEvent": false, "isVisible": null})"));
    EXPECT_EQ(listed[1].at("title"), "Annular Solar Eclipse");
}

TEST_F(EclipsesCommand, CountsTheDefaultYearsInTheDeviceZone) {
    write(kEclipses);
    // The same instant is still 2024 in Chicago and already 2025 in UTC.
    const std::vector<std::pair<const char*, std::vector<std::string>>> cases{
        {"--timezone America/Chicago", {"TSE", "ASE", "TLE"}},
        {"--timezone UTC", {"TLE"}},
    };
    for (const auto& [zone, keys] : cases) {
        const auto run = eclipses(std::string("--json --at 2025-01-01T03:00:00Z ") + zone);
        ASSERT_EQ(run.status, 0) << run.err;
        std::vector<std::string> found;
        for (const auto& event : nlohmann::json::parse(run.out)) found.push_back(event.at("key"));
        EXPECT_EQ(found, keys) << zone;
    }
}

TEST_F(EclipsesCommand, PrintsLocalTimesInTheDeviceZoneAndLocale) {
    write(kEclipses);
    const auto run = eclipses(
        "--from 2024 --to 2024 --lat 35.68 --lng 139.77 --timezone Asia/Tokyo --locale de_DE");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              "09.04.2024, 03:17 · Totale Sonnenfinsternis · solar · not visible here\n"
              "03.10.2024, 03:45 · Ringförmige Sonnenfinsternis · solar · not visible here\n");
    const auto empty = eclipses("--from 1990 --to 1991");
    EXPECT_EQ(empty.out, "No catalogued eclipses from 1990 to 1991\n");
}

TEST_F(EclipsesCommand, SendsDiagnosticsToStandardErrorWithJson) {
    const auto missing = eclipses("--json");
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.out.empty()) << missing.out;
    EXPECT_TRUE(
        missing.err.starts_with("lunoval: cannot find the phase tables and the eclipse "
                                "catalogue in "))
        << missing.err;
    write(std::string("junk\n") + kEclipses);
    const auto run = eclipses("--json --from 2023 --to 2023");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(nlohmann::json::parse(run.out).size(), 1U);
    EXPECT_EQ(run.err, "Warning: Invalid entry at line 1: junk\n");
}

// The shipped catalogue, end to end.
TEST(ShippedCatalogue, HasTheTotalSolarEclipseOf2024) {
    const auto listed = runLunoval("eclipses --from 2024 --to 2024 --json");
    ASSERT_EQ(listed.status, 0) << listed.err;
    const auto events = nlohmann::json::parse(listed.out);
    const auto total = std::find_if(events.begin(), events.end(),
                                    [](const auto& event) { return event.at("key") == "TSE"; });
    ASSERT_NE(total, events.end());
    EXPECT_NEAR(total->at("datetime").get<double>(), kTotalSolar2024, 120);
}

}  // namespace
}  // namespace lunoval
