#include <gtest/gtest.h>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "run_command.hpp"

namespace {

using lunoval::testing::runLunoval;

long countOf(const std::string& text, const std::string& part) {
    long found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

// A signal would show as status 128 and more.
TEST(Commands, RejectBadInputWithOneLineAndStatusTwo) {
    for (const char* arguments : {
             "record --lat 91 --lng 0",
             "record --lat -90.5 --lng 0",
             "record --lat 10 --lng 180.01",
             "record --lat nan --lng 0",
             "record --lat 10 --lng inf",
             "record --lat ten --lng 0",
             "record --lat 0x10 --lng 0",
             "record --lng 0",
             "record --lat 1 --lng 2 --timezone Mars/Olympus",
             "record --lat 1 --lng 2 --at yesterday",
             "record --lat 1 --lng 2 --at 2025-13-01T00:00:00Z",
             "record --lat 1 --lng 2 --at 2025-10-01T00:00:00",
             "record --lat 1 --lng 2 --at @1e400",
             "record --lat 1 --lng 2 --at @1e18",
             "record --lat 1 --lng 2 --at @1e12",
             "record --lat 1 --lng 2 --at @-4e11",
             "record --lat 1 --lng 2 --at @0x10",
             "eclipses --from 0x7E9",
             "moon --scale nan",
             "moon --size nan",
             "moon --size 2048 --scale 8",
             "moon --phase fullMoon --illumination nan",
             "moon --phase fullMoon --tilt nan",
             "render --kind MoonPhaseWidget --scale nan",
             "gallery --out gallery --scale 0x2",
             "record --lat 1 --lng 2 --frobnicate",
             "",
         }) {
        const auto run = runLunoval(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_TRUE(run.out.empty()) << arguments;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << arguments << run.err;
        EXPECT_TRUE(run.err.starts_with("lunoval: ")) << arguments << run.err;
    }
}

// Dates are formatted in any locale, and times counted in any zone, the environment or the
// options name: one that cannot be used says so in one line, and the nearest usable one serves.
TEST(RecordCommand, AnswersWhateverLocaleOrZoneTheEnvironmentNames) {
    const std::string record =
        "record --lat 48.85 --lng 2.35 --timezone UTC --at 2025-10-07T03:48:00Z ";
    const std::string deviceZone = "eclipses --from 2025 --to 2025";
    const std::string render =
        "render --kind MoonTimesWidget --family systemMedium --timezone UTC --location "
        "48.85,2.35 --out " +
        ::testing::TempDir() + "times.png";
    struct Case {
        std::string arguments;
        const char* environment;
        const char* warning;
    };
    for (const auto& [arguments, environment, warning] : {
             Case{record + "--locale xxxxxxxxxxxx", "", "using en_US_POSIX"},
             Case{record + "--locale abcdefghijkl_DE", "", "using en_US_POSIX"},
             Case{record, "LC_ALL=xxxxxxxxxxxx", "using en_US_POSIX"},
             Case{record, "LC_ALL= LC_MESSAGES=abcdefghijkl_DE.UTF-8", "using en_US_POSIX"},
             Case{render, "LC_ALL= LANG=abcdefghijkl_DE", "using en_US_POSIX"},
             Case{deviceZone, "TZ=Mars/Olympus", "TZ='Mars/Olympus' names no time zone; using UTC"},
             Case{deviceZone, "TZ=:nonsense", "TZ=':nonsense' names no time zone; using UTC"},
         }) {
        const auto run = runLunoval(arguments, environment);
        EXPECT_EQ(run.status, 0) << arguments << environment << run.err;
        // Counted by their mark: a sanitizer's build adds its own summary.
        EXPECT_EQ(countOf(run.err, "lunoval: "), 1) << environment << run.err;
        EXPECT_NE(run.err.find(warning), std::string::npos) << environment << run.err;
    }
}

// Without --timezone a place keeps the time of its city, or of the nearest one, and says so.
TEST(RecordCommand, APlaceWithoutAZoneTakesItsCitys) {
    for (const auto& [arguments, zone, said] :
         std::vector<std::tuple<std::string, std::string, bool>>{
             {"record --json --lat 35.68 --lng 139.69", "Asia/Tokyo", true},
             {"timeline --json --location \"Quito, Ecuador\"", "America/Guayaquil", true},
             {"record --json --location Paris", "Europe/Paris", true},
             {"timeline --json --location 48.85,2.35 --timezone Asia/Tokyo", "Asia/Tokyo", false},
         }) {
        const auto run = runLunoval(arguments, "TZ=UTC HOME=" + ::testing::TempDir());
        EXPECT_EQ(run.status, 0) << arguments << run.err;
        EXPECT_NE(run.out.find("\"timezone\":\"" + zone + "\""), std::string::npos) << run.out;
        EXPECT_EQ(run.err.find("lunoval: time zone " + zone + ", of ") != std::string::npos, said)
            << run.err;
    }
}

TEST(RecordCommand, ReadsUnixSecondsAndIsoTimesAlike) {
    const auto unix =
        runLunoval("record --lat 10 --lng 20 --timezone UTC --at @1759808880.5 --json");
    const auto iso =
        runLunoval("record --lat 10 --lng 20 --timezone UTC --at 2025-10-07T03:48:00.5Z --json");
    ASSERT_EQ(unix.status, 0) << unix.err;
    EXPECT_EQ(nlohmann::json::parse(unix.out), nlohmann::json::parse(iso.out));
}

TEST(RecordCommand, PrintsAReadableSummaryInTheDeviceZone) {
    const auto run = runLunoval(
        "record --lat 51.4769 --lng -0.0005 --timezone Europe/London --locale en_GB "
        "--at 2025-06-21T12:00:00Z");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("Sun         rise 04:4"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Europe/London"), std::string::npos) << run.out;
}

}  // namespace
