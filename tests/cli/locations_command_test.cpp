#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include "temp_folder.hpp"

#include "platform/files.hpp"
#include "run_command.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;
using testing::CommandResult;

// The host app's side in a fresh home, as on a new machine.
class HostAppCommands : public ::testing::Test {
  protected:
    CommandResult run(const std::string& arguments) const {
        return testing::runLunoval(arguments, environment());
    }
    [[nodiscard]] std::string environment() const {
        return "HOME=" + home_.string() +
               " XDG_CONFIG_HOME= XDG_DATA_HOME= XDG_RUNTIME_DIR=" + home_.string();
    }
    [[nodiscard]] nlohmann::json list() const {
        const auto listed = run("locations list --json");
        EXPECT_EQ(listed.status, 0) << listed.err;
        return nlohmann::json::parse(listed.out);
    }
    [[nodiscard]] fs::path defaultsFile() const {
        return home_ / ".config/lunoval/group.com.orvane.lunoval.plist";
    }
    [[nodiscard]] fs::path storeFile() const {
        return home_ / ".local/share/lunoval/a77cc25f49e447e0ad67b8a8fd4ad381";
    }

    testing::TempFolder temp_{"lunoval-host-app"};
    const fs::path& home_ = temp_.path();
};

TEST_F(HostAppCommands, TwoEditorsAndAWidgetAtOnceLoseNothing) {
    ASSERT_EQ(run("locations list").status, 0);  // the default place, migrated
    const std::string script =
        "export " + environment() + "; L=" + LUNOVAL_BINARY +
        "; for p in A B C D; do (for i in $(seq 1 10); do $L locations add $p$i $i.5 -$i.25 UTC"
        " >/dev/null || echo failed; done) & done;"
        " (for i in $(seq 1 6); do $L timeline --json --location-service unavailable"
        " >/dev/null 2>&1 || echo failed; done) & wait";
    std::FILE* output = ::popen(script.c_str(), "r");
    std::string failures;
    for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) failures += char(c);
    ::pclose(output);
    EXPECT_EQ(failures, "");
    const auto places = list().at("locations");
    EXPECT_EQ(places.size(), 42U);  // the device, San Francisco and 40 added
    const auto defaults = readWholeFile(defaultsFile()).value_or("");
    EXPECT_NE(defaults.find("WidgetLastLocationRequestTimestamp"), std::string::npos);
}

TEST_F(HostAppCommands, UpdatesEndAsLocationServicesAnswer) {
    struct Case {
        const char* service;
        int status;
        const char* messages;
        const char* waiting = "";  // a part of the standard error
    };
    const std::vector<Case> cases{
        {"fixed:-33.87,151.21", 0,
         "BeginLocationUpdate\nLocationUpdated: true\n"
         "Current Location  -33.87, 151.21  Australia/Sydney\n"},
        // The selection falls back to what it was before, and observers hear of it.
        {"denied", 1,
         "BeginLocationUpdate\nLocationServicesPermissionDenied\nLocationUpdated: true\n"},
        {"undetermined", 1, ""},
        {"late:5:1.5,2.5 --timeout 1", 1, "BeginLocationUpdate\nLocationUpdateFailed\n",
         "lunoval: Waiting for a fix from location services (up to 1 s; --timeout sets it)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.service);
        const auto update = run(std::string("locations update --timezone Australia/Sydney "
                                            "--location-service ") +
                                c.service);
        EXPECT_EQ(update.status, c.status);
        EXPECT_EQ(update.out, c.messages);
        EXPECT_NE(update.err.find(c.waiting), std::string::npos) << update.err;
    }
}

// Cities by name from the world locations: one meant, several possible, none known.
TEST_F(HostAppCommands, PlacesByName) {
    struct Case {
        const char* name;
        int status;
        const char* zoneOrMessage;  // the saved place's zone, else a part of the error
    };
    for (const auto& [name, status, expected] : std::vector<Case>{
             {"Paris", 0, "Europe/Paris"},            // not Paris, Texas or Illinois
             {"paris, texas", 0, "America/Chicago"},  // narrowed by its state
             {"Quito, Ecuador", 0, "America/Guayaquil"},
             {"São Paulo", 0, "America/Sao_Paulo"},
             {"ZURICH", 0, "Europe/Zurich"},               // no accent, any case
             {"Springfield", 2, "Springfield, Illinois"},  // several, none a zone's namesake
             {"Xyzzyville", 2, "no place named 'Xyzzyville'"},
         }) {
        const auto added = run("locations add \"" + std::string(name) + "\"");
        EXPECT_EQ(added.status, status) << name << added.err;
        if (status != 0) {
            EXPECT_NE(added.err.find(expected), std::string::npos) << added.err;
            continue;
        }
        EXPECT_EQ(list().at("locations").back().at("timezoneId"), expected) << name;
    }
    const auto search = run("locations search Pari");
    EXPECT_NE(search.out.find("Paris, Texas, United States  "), std::string::npos) << search.out;
    EXPECT_EQ(run("locations search Xyzzyville").status, 1);
}

TEST_F(HostAppCommands, BadInputAndACorruptListChangeNothing) {
    ASSERT_EQ(run("locations add Paris 48.8566 2.3522 Europe/Paris").status, 0);
    const auto before = readWholeFile(defaultsFile());
    for (const char* bad :
         {"add Nowhere 10 10 Mars/Olympus", "add North 90.5 10 UTC", "add Quay 10 0 UTC",
          "remove 0", "remove 3", "move 1 3", "select -1", "select 3", "remove one"}) {
        SCOPED_TRACE(bad);
        const auto refused = run(std::string("locations ") + bad);
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(std::count(refused.err.begin(), refused.err.end(), '\n'), 1);
        EXPECT_EQ(readWholeFile(defaultsFile()), before);
    }
    std::ofstream(defaultsFile()) << "<plist><dict><key>";
    const auto corrupt = run("locations add Rome 41.9 12.5 Europe/Rome");
    EXPECT_EQ(corrupt.status, 1);
    EXPECT_NE(corrupt.err.find("is not a property list"), std::string::npos);
    EXPECT_EQ(readWholeFile(defaultsFile()), "<plist><dict><key>");

    // The widget's side starts a new file, keeping each damaged one under a name of its own.
    for (const char* damaged : {"<plist><dict><key>", "<plist><array>"}) {
        std::ofstream(defaultsFile()) << damaged;
        const auto widget = run("timeline --json --location 48.85,2.35");
        EXPECT_EQ(widget.status, 0);
        const auto said = "lunoval: " + defaultsFile().string() +
                          " did not read as a property list; kept it as " +
                          defaultsFile().string() + ".corrupt-";
        EXPECT_NE(("\n" + widget.err).find("\n" + said), std::string::npos) << widget.err;
    }
    int keptAside = 0;
    for (const auto& entry : fs::directory_iterator(defaultsFile().parent_path())) {
        keptAside += entry.path().filename().string().find(".corrupt-") != std::string::npos;
    }
    EXPECT_EQ(keptAside, 2);
}

TEST_F(HostAppCommands, StoredPreferencesStandInForMissingOptions) {
    EXPECT_EQ(run("gallery").status, 2);
    ASSERT_EQ(run("preferences set scale 1").status, 0);
    ASSERT_EQ(run("preferences set outputFolder " + (home_ / "images").string()).status, 0);
    EXPECT_EQ(run("preferences set scale 9").status, 2);
    EXPECT_EQ(run("preferences").out,
              "scale = 1.0\noutputFolder = " + (home_ / "images").string() + "\n");
    EXPECT_EQ(run("preferences get scale").out, "1.0\n");

    ASSERT_EQ(run("render --kind MoonPhaseWidget --family accessoryCircular --preview").status, 0);
    const auto image = readWholeFile(home_ / "images/MoonPhaseWidget-accessoryCircular.png");
    ASSERT_TRUE(image && image->size() > 24);
    EXPECT_EQ(static_cast<unsigned char>((*image)[19]), 76);  // width in pixels at scale 1

    ASSERT_EQ(run("preferences unset outputFolder").status, 0);
    EXPECT_EQ(run("preferences").out, "scale = 1.0\n");
    const auto unset = run("preferences get outputFolder");
    EXPECT_EQ(unset.status, 1);
    EXPECT_NE(unset.err.find("no outputFolder is kept"), std::string::npos) << unset.err;
    std::ofstream(storeFile()) << "garbage";
    const auto corrupt = run("moon --out " + (home_ / "m.png").string());
    EXPECT_EQ(corrupt.status, 1);
    EXPECT_EQ(readWholeFile(storeFile()), "garbage");
    EXPECT_EQ(run("moon --scale 2 --out " + (home_ / "m.png").string()).status, 0);

    std::ofstream(home_ / "not-a-folder");
    const auto unwritable =
        testing::runLunoval("preferences set scale 2",
                            environment() + " XDG_DATA_HOME=" + (home_ / "not-a-folder").string());
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_EQ(std::count(unwritable.err.begin(), unwritable.err.end(), '\n'), 1) << unwritable.err;
}

}  // namespace
}  // namespace lunoval
