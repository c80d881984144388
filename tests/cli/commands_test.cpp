#include <gtest/gtest.h>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/files.hpp"
#include "platform/user_defaults.hpp"
#include "run_command.hpp"
#include "temp_folder.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;
using testing::countOf;
using testing::runLunoval;
constexpr auto npos = std::string::npos;

// A fresh home, as on a new machine, that commands run in.
struct Home {
    testing::TempFolder folder{"lunoval-home"};
    const fs::path& path = folder.path();
    const fs::path defaults = path / ".config/lunoval/group.com.orvane.lunoval.plist";

    [[nodiscard]] testing::CommandResult run(const std::string& arguments) const {
        return runLunoval(arguments, "cd " + path.string() + " && " + testing::freshHome(path));
    }
};

// Refused before anything is written: one line saying what was expected, status 2 (a signal
// would show as 128 and more) and nothing on standard output but, for a mistyped command, the
// list of commands.
TEST(Commands, RefuseBadInputInOneLineWritingNothing) {
    const Home home;
    std::vector<std::pair<std::string, std::string>> cases{
        {"record --lat 1 --lng 2 --timezone Mars/Olympus", "such as Europe/Paris"},
        {"record --lat 1 --lng 2 --at yesterday", "2025-10-07T21:30"},
        {"timeline --location Atlantis", "give LAT,LNG"},
        {"host --out out --widgets MoonPhaseWidget", "KIND:FAMILY"},
        {"locations add", "(lunoval locations add --help shows the forms)"},
        {"pref", "unknown command 'pref'; did you mean preferences?"},
        {"locations lsit", "unknown command 'lsit' of locations; did you mean list?"},
        {"gallery", "--out is required"},
        // The four widgets, named exactly, and the sizes each offers; only the times and phase
        // widgets reach the lock screen.
        {"timeline --kind moonphasewidget",
         "{MoonSunTimesWidget,MoonEventWidget,MoonTimesWidget,MoonPhaseWidget}"},
        {"timeline --kind MoonSunTimesWidget --family systemLarge", "(it offers systemSmall)"},
        {"timeline --kind MoonEventWidget --family accessoryInline", "(it offers systemSmall)"},
        {"render --kind MoonTimesWidget --family systemLarge",
         "(it offers systemSmall, systemMedium, accessoryRectangular, accessoryCircular, "
         "accessoryInline)"},
        {"host --out out --widgets MoonPhaseWidget:systemMedium",
         "(it offers systemSmall, systemLarge, accessoryCircular, accessoryRectangular, "
         "accessoryInline)"},
    };
    for (const char* arguments :
         {"record --lat 91 --lng 0", "record --lat 10 --lng 180.01", "record --lat nan --lng 0",
          "record --lat 0x10 --lng 0", "record --lng 0", "record --lat 1 --lng 2 --frobnicate",
          "record --lat 1 --lng 2 --at 2025-02-30", "record --lat 1 --lng 2 --at 2025-10-01T24:30",
          "record --lat 1 --lng 2 --at @1e400", "record --lat 1 --lng 2 --at @1e12",
          "eclipses --from 0x7E9", "eclipses --from 2025 --to 2024", "eclipses --lat 32.78",
          // The widget and drawing options.
          "timeline --location 91,0", "timeline --family systemHuge",
          "timeline --location-service gps", "timeline --snapshot --placeholder",
          "host --out out --min-interval 0", "render --scale nan", "render --out x.gif",
          "render --mode sepia", "moon --out moon.jpeg", "moon --size 2048 --scale 8",
          "moon --phase Gibbous", "moon --illumination 0.5",
          "moon --phase newMoon --illumination 1.5", "preferences set scale 9"}) {
        cases.emplace_back(arguments, "");
    }
    for (const auto& [arguments, said] : cases) {
        const auto run = home.run(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_EQ(run.out.empty(), said.find("did you mean") == npos) << arguments << run.out;
        EXPECT_EQ(countOf(run.err, "\n"), 1) << arguments << run.err;
        EXPECT_TRUE(run.err.starts_with("lunoval: ")) << arguments << run.err;
        EXPECT_NE(run.err.find(said), npos) << arguments << run.err;
    }
    for (const auto& entry : fs::recursive_directory_iterator(home.path)) {
        EXPECT_TRUE(entry.is_directory()) << entry.path();
    }
}

// Usage and help on standard output with status 0; a file that cannot be written named in one
// line with status 1.
TEST(Commands, AnswerWithTheStatusAndStreamOfTheOutcome) {
    const Home home;
    fs::create_directories(home.path / "taken.png/inside");
    std::ofstream(home.path / "file") << "a file, not a folder";
    for (const auto& [arguments, status, said] :
         std::vector<std::tuple<const char*, int, const char*>>{
             {"", 0, "\n  locations "},
             {"help", 0, "\n  preferences "},
             {"record --help", 0, "--quiet"},
             {"moon --location 48.85,2.35 --timezone UTC --out m.png", 0, "Wrote m.png\n"},
             {"moon --out taken.png", 1, "lunoval: cannot write taken.png: "},
             {"moon --out file/m.png", 1, "lunoval: cannot write file/m.png: "},
         }) {
        const auto run = home.run(arguments);
        EXPECT_EQ(run.status, status) << arguments;
        EXPECT_NE((status != 0 ? run.err : run.out).find(said), npos) << arguments << run.err;
        EXPECT_EQ(countOf(run.err, "lunoval: "), status) << arguments << run.err;
    }
}

// A locale or zone that cannot be used, from the options or the environment, is named in one
// line, and the nearest usable one serves; the drawing program says so as well.
TEST(Commands, SayWhenTheLocaleOrZoneCannotBeUsed) {
    const std::string paris = "--location 48.85,2.35 --timezone UTC ";
    for (const auto& [arguments, environment, warning] :
         std::vector<std::tuple<std::string, const char*, const char*>>{
             {paris + "record --locale abcdefghijkl_DE", "", "using en_US_POSIX"},
             {paris + "record --locale qq_QQ", "", "'qq_QQ' cannot be used; using en_US_POSIX\n"},
             {paris + "record --locale _DE", "", "'_DE' cannot be used; using en_US_POSIX\n"},
             {paris + "record --locale de@numbers=xxxx", "", "cannot be used; using de\n"},
             {paris + "render --out " + ::testing::TempDir() + "w.png",
              "LC_ALL= LANG=abcdefghijkl_DE", "using en_US_POSIX"},
             {"eclipses", "TZ=:nonsense", "TZ=':nonsense' names no time zone; using UTC"},
         }) {
        const auto run = runLunoval(arguments, environment);
        EXPECT_EQ(run.status, 0) << arguments << environment << run.err;
        // Counted by their mark: a sanitizer's build adds its own summary.
        EXPECT_EQ(countOf(run.err, "lunoval: "), 1) << environment << run.err;
        EXPECT_NE(run.err.find(warning), npos) << environment << run.err;
    }
}

// Each form --at takes; today, tomorrow and times without an offset read in the device zone,
// the option's or else the place's own.
TEST(Commands, ReadLocalTimesInTheDeviceZone) {
    const std::string place = "--lat 10 --lng 20 ";
    using namespace std::chrono;
    const auto tokyoMidnight = floor<days>(system_clock::now() + 9h) - 9h;
    const double tokyoToday = duration<double>(tokyoMidnight.time_since_epoch()).count();
    for (const auto& [arguments, selectedTime] : std::vector<std::pair<std::string, double>>{
             {place + "--timezone Asia/Tokyo --at today", tokyoToday},
             {place + "--timezone Asia/Tokyo --at tomorrow --quiet", tokyoToday + 86400},
             {place + "--timezone Asia/Tokyo --at 2025-10-07T21:30:15+02:00", 1759865415},
             {place + "--timezone Asia/Tokyo --at 2025-10-07T19:30:15z", 1759865415},
             // Midnight skipped: the day starts at 01:00.
             {place + "--timezone America/Sao_Paulo --at 2018-11-04", 1541300400},
             // 23:30 came twice: the first, still in summer time.
             {place + "--timezone America/Sao_Paulo --at 2019-02-16T23:30", 1550367000},
             // 02:30 skipped: the first instant after the gap.
             {place + "--timezone Europe/Paris --at 2025-03-30T02:30", 1743296400},
             {"--location Paris --at 2025-10-07", 1759788000},
             {"--location Paris --timezone Asia/Tokyo --at 2025-10-07", 1759762800},
             {"--lat 35.68 --lng 139.69 --at 2025-10-07", 1759762800},
         }) {
        const auto run = runLunoval("record --json " + arguments, "TZ=UTC");
        ASSERT_EQ(run.status, 0) << arguments << run.err;
        EXPECT_EQ(nlohmann::json::parse(run.out).at("selectedTime"), selectedTime) << arguments;
        EXPECT_TRUE(!arguments.ends_with("--quiet") || run.err.empty()) << run.err;
    }
}

// The entry goes out at the time-out, from the place the app saved; the command then waits for
// the fix still on its way and caches it. The next run answers from the cache at once and
// caches the fix its background request brings.
TEST(Commands, LateAndBackgroundFixesReachTheWidgetCache) {
    const Home home;
    const auto cachedLatitude = [&] {
        return UserDefaults(home.defaults).doubleForKey("WidgetLastLocationLat");
    };
    ASSERT_EQ(home.run("locations add Tokyo 35.68 139.77 Asia/Tokyo").status, 0);
    ASSERT_EQ(home.run("locations select 2").status, 0);
    const std::string timeline = "timeline --json --timezone Europe/Paris --at 2025-10-09T";
    const auto late = home.run(timeline + "08:00:00Z --location-service late:9:-33.87,151.21");
    EXPECT_NE(late.err.find("⏱️ Widget: Location fetch timed out\n"), npos) << late.err;
    EXPECT_NE(late.out.find(R"("timezone":"Asia/Tokyo","locationName":"Tokyo")"), npos);
    EXPECT_EQ(cachedLatitude(), -33.87);

    const auto background = home.run(timeline + "10:00:00Z --location-service late:0.5:1.5,2.5");
    EXPECT_NE(background.out.find(R"("latitude":-33.87,"longitude":151.21)"), npos);
    EXPECT_EQ(cachedLatitude(), 1.5);
}

// Each catalogued eclipse over the years asked for, by default this year and the next in the
// device zone; visible where its body is above the horizon at greatest eclipse.
TEST(Commands, EclipsesListTheWindowWithVisibilityFromThePlace) {
    const std::string dallas = "--lat 32.78 --lng -96.80 --timezone America/Chicago";
    const std::string tokyo = "--lat 35.68 --lng 139.77 --timezone Asia/Tokyo";
    for (const auto& [arguments, listed] : std::vector<std::pair<std::string, std::string>>{
             // Dallas saw the total solar eclipse of April 2024, Tokyo the total lunar one of
             // September 2025.
             {"--from 2024 --to 2025 " + dallas, "NLE+ TSE+ PLE+ ASE+ TLE+ PSE- TLE- PSE+ "},
             {"--from 2024 --to 2025 " + tokyo, "NLE- TSE- PLE- ASE- TLE- PSE- TLE+ PSE- "},
             // The same instant is still 2024 in Chicago and already 2025 in UTC.
             {"--at 2025-01-01T03:00:00Z --timezone America/Chicago",
              "NLE TSE PLE ASE TLE PSE TLE PSE "},
             {"--at 2025-01-01T03:00:00Z --timezone UTC", "TLE PSE TLE PSE ASE TLE TSE PLE "},
         }) {
        std::string keys;
        for (const auto& event :
             nlohmann::json::parse(runLunoval("eclipses --json " + arguments).out)) {
            const auto& visible = event.at("isVisible");
            const char* mark = visible.is_null() ? " " : visible.get<bool>() ? "+ " : "- ";
            keys += event.at("key").get<std::string>() + mark;
        }
        EXPECT_EQ(keys, listed) << arguments;
    }
    EXPECT_NE(runLunoval("eclipses --from 2025 --to 2025 --locale de_DE " + tokyo)
                  .out.find("\n08.09.2025, 03:12 · Totale Mondfinsternis · lunar · visible here\n"),
              npos);
    EXPECT_NE(runLunoval("record --at 2025-09-07T18:12:00Z " + tokyo)
                  .out.find("\nEclipse     Total Lunar Eclipse · visible here\n"),
              npos);
    EXPECT_EQ(runLunoval("eclipses --from 2101").out, "No catalogued eclipses from 2101 to 2102\n");
}

// Four editors adding ten places each while the widget writes its own keys: the shared file's
// lock loses no one's change.
TEST(LocationsCommand, EditorsAndAWidgetAtOnceLoseNothing) {
    const Home home;
    const std::string script =
        "export " + testing::freshHome(home.path) + "; L=" + LUNOVAL_BINARY +
        "; for p in A B C D; do (for i in $(seq 1 10); do $L locations add $p$i $i.5 -$i.25 UTC"
        " >/dev/null || echo failed; done) & done;"
        " (for i in $(seq 1 6); do $L timeline --json --location-service unavailable"
        " >/dev/null 2>&1 || echo failed; done) & wait";
    std::FILE* output = ::popen(script.c_str(), "r");
    std::string failures;
    for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) failures += char(c);
    ::pclose(output);
    EXPECT_EQ(failures, "");
    const auto places = nlohmann::json::parse(home.run("locations list --json").out);
    EXPECT_EQ(places.at("locations").size(), 42U);  // the device, San Francisco and 40 added
    const auto defaults = readWholeFile(home.defaults).value_or("");
    EXPECT_NE(defaults.find("WidgetLastLocationRequestTimestamp"), npos);
}

// The command that edits the list leaves a damaged one alone and names it; the widget's side
// sets it aside and carries on.
TEST(LocationsCommand, ADamagedListIsLeftAloneAndNamed) {
    const Home home;
    ASSERT_EQ(home.run("locations list").status, 0);
    std::ofstream(home.defaults) << "<plist><dict><key>";
    const auto refused = home.run("locations add Rome 41.9 12.5 Europe/Rome");
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find(home.defaults.string() + " is not a property list"), npos);
    EXPECT_EQ(readWholeFile(home.defaults), "<plist><dict><key>");
    const auto widget = home.run("timeline --json --location 48.85,2.35");
    EXPECT_EQ(widget.status, 0);
    EXPECT_NE(widget.err.find("kept it as " + home.defaults.string() + ".corrupt-"), npos);
}

// A refused edit, or an update that finds no device, changes nothing; an update prints each
// stage as the service answers, and the widgets follow a device found under no place's name.
TEST(LocationsCommand, EditsAndUpdatesEndAsTheListAndTheServiceAllow) {
    const Home home;
    ASSERT_EQ(home.run("locations select 1").status, 0);
    const auto before = readWholeFile(home.defaults);
    for (const auto& [arguments, status, out, said] :
         std::vector<std::tuple<std::string, int, std::string, std::string>>{
             {"remove 0", 2, "", "lunoval: entry 0 is the device's own position\n"},
             {"move 1 2", 2, "", "lunoval: no saved place 2 (the saved places are 1 to 1)\n"},
             {"add Quito -0.18", 2, "", "lunoval: add takes a city's name alone, or NAME"},
             {"add Nowhere 10 10 Mars/Olympus", 2, "", "lunoval: unknown time zone 'Mars/Olympus'"},
             {"add North 90.5 10 UTC", 2, "", "lunoval: cannot read the coordinates 90.5 10"},
             {"add Quay 10 0 UTC", 2, "", "lunoval: a place on the equator or the prime meridian"},
             {"select 0 --location-service denied", 1,
              "BeginLocationUpdate\nLocationServicesPermissionDenied\n",
              "lunoval: location services denied access\n"},
             {"update --location-service undetermined", 1, "",
              "lunoval: location services have not been authorized yet\n"},
             {"select 0 --location-service silent --timeout 1", 1,
              "BeginLocationUpdate\nLocationUpdateFailed\n",
              "lunoval: no device location before the update ended\n"},
             {"select 0 --location-service fixed:-33.87,151.21", 0,
              "BeginLocationUpdate\nLocationUpdated: true\nCurrent Location  -33.87, 151.21  UTC\n",
              ""},
         }) {
        const auto run = home.run("locations " + arguments + " --timezone UTC");
        EXPECT_EQ(run.status, status) << arguments;
        EXPECT_EQ(run.out, out) << arguments;
        EXPECT_NE(run.err.find(said), npos) << arguments << run.err;
        EXPECT_EQ(readWholeFile(home.defaults) == before, status != 0) << arguments;
    }
    EXPECT_EQ(UserDefaults(home.defaults).integerForKey("selectedIndex"), 0);
    EXPECT_EQ(UserDefaults(home.defaults).dataForKey("widgetData"),
              R"({"latitude":-33.87,"longitude":151.21,"timezone":"UTC"})");
}

// Cities by name from the world locations: the zone's namesake, narrowed by state or country,
// without accents or case; a name of several cities, or of none, is refused.
TEST(LocationsCommand, PlacesByName) {
    const Home home;
    for (const auto& [name, status, expected] :
         std::vector<std::tuple<std::string, int, const char*>>{
             {"Paris", 0, "Europe/Paris"},
             {"paris, texas", 0, "America/Chicago"},
             {"ZURICH", 0, "Europe/Zurich"},
             {"Springfield", 2, "Springfield, Illinois"},
             {"Xyzzyville", 2, "no place named 'Xyzzyville'"},
         }) {
        const auto added = home.run("locations add \"" + name + "\"");
        EXPECT_EQ(added.status, status) << name << added.err;
        const auto said = status != 0 ? added.err : home.run("locations list --json").out;
        EXPECT_NE(said.find(expected), npos) << name << said;
    }
    EXPECT_NE(home.run("locations search Pari").out.find("Paris, Texas, United States  "), npos);
}

// Stored preferences stand in for missing options; a damaged store is left alone and refused.
TEST(PreferencesCommand, StoredPreferencesStandInForMissingOptions) {
    const Home home;
    ASSERT_EQ(home.run("preferences set outputFolder images").status, 0);
    ASSERT_EQ(home.run("preferences set scale 1").status, 0);
    EXPECT_EQ(home.run("preferences get scale").out, "1.0\n");
    ASSERT_EQ(home.run("render --kind MoonPhaseWidget --family accessoryCircular --preview").status,
              0);
    const auto image = readWholeFile(home.path / "images/MoonPhaseWidget-accessoryCircular.png");
    EXPECT_EQ(image.value_or("").substr(16, 4), std::string("\0\0\0\x4c", 4));  // 76 pixels wide

    ASSERT_EQ(home.run("preferences unset outputFolder").status, 0);
    EXPECT_EQ(home.run("preferences").out, "scale = 1.0\n");
    EXPECT_NE(home.run("preferences get outputFolder").err.find("no outputFolder is kept"), npos);
    const auto store = home.path / ".local/share/lunoval/a77cc25f49e447e0ad67b8a8fd4ad381";
    std::ofstream(store) << "garbage";
    EXPECT_EQ(home.run("moon --out m.png").status, 1);
    EXPECT_EQ(readWholeFile(store), "garbage");
}

}  // namespace
}  // namespace lunoval
