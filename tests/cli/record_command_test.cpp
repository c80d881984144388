#include <gtest/gtest.h>
#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/calendar.hpp"
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
             "record --lat 1 --lng 2 --at 2025-02-30",
             "record --lat 1 --lng 2 --at 2025-10-01T24:30",
             "record --lat 1 --lng 2 --at todays",
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
         }) {
        const auto run = runLunoval(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_TRUE(run.out.empty()) << arguments;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << arguments << run.err;
        EXPECT_TRUE(run.err.starts_with("lunoval: ")) << arguments << run.err;
    }
}

TEST(Commands, ListEveryCommandAndGuessAMistypedOne) {
    struct Case {
        const char* arguments;
        int status;
        const char* error;
    };
    for (const auto& [arguments, status, error] : std::vector<Case>{
             {"", 0, ""},
             {"help", 0, ""},
             {"--timezone UTC", 0, ""},
             {"recrod", 2, "lunoval: unknown command 'recrod'; did you mean record?\n"},
             {"timelime --json", 2,
              "lunoval: unknown command 'timelime'; did you mean timeline?\n"},
             {"relod", 2, "lunoval: unknown command 'relod'; did you mean reload?\n"},
             {"pref", 2, "lunoval: unknown command 'pref'; did you mean preferences?\n"},
             {"frobnicate", 2, "lunoval: unknown command 'frobnicate'\n"},
             {"locations lsit", 2,
              "lunoval: unknown command 'lsit' of locations; did you mean list?\n"},
         }) {
        const auto run = runLunoval(arguments);
        EXPECT_EQ(run.status, status) << arguments;
        EXPECT_EQ(run.err, error) << arguments;
        EXPECT_NE(run.out.find("Subcommands:"), std::string::npos) << arguments << run.out;
    }
    const auto usage = runLunoval("").out;
    for (const std::string command : {"record", "timeline", "moon", "render", "gallery", "host",
                                      "reload", "locations", "preferences", "eclipses", "help"}) {
        EXPECT_NE(usage.find("\n  " + command + " "), std::string::npos) << command << usage;
    }
}

TEST(Commands, BadInputSaysWhatWasExpected) {
    for (const auto& [arguments, expected] : std::vector<std::pair<const char*, const char*>>{
             {"record --lat 1 --lng 2 --timezone Mars/Olympus", "such as Europe/Paris"},
             {"record --lat 1 --lng 2 --at yesterday", "2025-10-07T21:30"},
             {"timeline --location Atlantis", "give LAT,LNG"},
             {"timeline --location-service gps", "fixed:LAT,LNG"},
             {"timeline --family systemHuge", "systemSmall,systemMedium"},
             {"render --mode sepia", "{fullColor,accented,vibrant}"},
             {"render --color-scheme blue", "{dark,light}"},
             {"moon --scale 1 --out m.png --phase Gibbous", "waxingGibbous"},
             {"locations add", "(lunoval locations add --help shows the forms)"},
         }) {
        const auto run = runLunoval(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_NE(run.err.find(expected), std::string::npos) << arguments << run.err;
        EXPECT_EQ(run.err.find("->"), std::string::npos) << arguments << run.err;
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
             {"timeline --json --location Paris --quiet", "Europe/Paris", false},
             {"timeline --json --location 48.85,2.35 --timezone Asia/Tokyo", "Asia/Tokyo", false},
         }) {
        const auto run = runLunoval(arguments, "TZ=UTC HOME=" + ::testing::TempDir());
        EXPECT_EQ(run.status, 0) << arguments << run.err;
        EXPECT_NE(run.out.find("\"timezone\":\"" + zone + "\""), std::string::npos) << run.out;
        EXPECT_EQ(run.err.find("lunoval: time zone " + zone + ", of ") != std::string::npos, said)
            << run.err;
        if (arguments.ends_with("--quiet")) {
            EXPECT_EQ(run.err, "");
        }
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

// Times without an offset are read in the device zone, whichever option settled it.
TEST(RecordCommand, ReadsDatesAndLocalTimesInTheDeviceZone) {
    for (const auto& [arguments, selectedTime] : std::vector<std::pair<std::string, double>>{
             {"--lat 10 --lng 20 --timezone Europe/Paris --at 2025-10-07", 1759788000},
             {"--lat 10 --lng 20 --timezone Europe/Paris --at 2025-10-07T21:30", 1759865400},
             {"--lat 10 --lng 20 --timezone Europe/Paris --at 2025-10-07T21:30:15", 1759865415},
             // Midnight skipped: the day starts at 01:00.
             {"--lat 10 --lng 20 --timezone America/Sao_Paulo --at 2018-11-04", 1541300400},
             // 23:30 came twice: the first, still in summer time.
             {"--lat 10 --lng 20 --timezone America/Sao_Paulo --at 2019-02-16T23:30", 1550367000},
             // 02:30 skipped: the first instant after the gap.
             {"--lat 10 --lng 20 --timezone Europe/Paris --at 2025-03-30T02:30", 1743296400},
             {"--location Paris --at 2025-10-07", 1759788000},
             {"--lat 35.68 --lng 139.69 --at 2025-10-07", 1759762800},
         }) {
        const auto run = runLunoval("record --json " + arguments, "TZ=UTC");
        ASSERT_EQ(run.status, 0) << arguments << run.err;
        EXPECT_EQ(nlohmann::json::parse(run.out).at("selectedTime"), selectedTime) << arguments;
    }
}

TEST(RecordCommand, TodayAndTomorrowStartAtTheirFirstLocalInstant) {
    const auto clock = std::chrono::system_clock::now().time_since_epoch();
    const auto now = std::chrono::duration<double>(clock).count();
    const lunoval::Calendar beirut(*lunoval::TimeZone::named("Asia/Beirut"));
    const auto today = *beirut.components(lunoval::Date::fromTimeIntervalSince1970(now));
    const auto start = [&](int days) {
        return beirut.date(today.year, today.month, today.day + days)->timeIntervalSince1970();
    };
    for (const auto& [at, expected, tolerance] :
         std::vector<std::tuple<const char*, double, double>>{
             {"now", now, 60}, {"today", start(0), 0}, {"tomorrow", start(1), 0}}) {
        const auto run = runLunoval(
            "record --json --lat 33.9 --lng 35.5 --timezone Asia/Beirut --at " + std::string(at));
        ASSERT_EQ(run.status, 0) << at << run.err;
        EXPECT_NEAR(nlohmann::json::parse(run.out).at("selectedTime"), expected, tolerance) << at;
    }
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
