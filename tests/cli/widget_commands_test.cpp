#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files.hpp"
#include "run_command.hpp"
#include "temp_folder.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

// The pixel size a PNG's header gives.
std::pair<int, int> pngSize(const fs::path& path) {
    const auto bytes = readWholeFile(path).value_or("");
    if (bytes.size() < 24 || bytes.substr(1, 3) != "PNG") return {0, 0};
    const auto number = [&](std::size_t at) {
        int value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value * 256 + static_cast<unsigned char>(bytes[at + i]);
        return value;
    };
    return {number(16), number(20)};
}

class WidgetCommands : public ::testing::Test {
  protected:
    testing::CommandResult run(const std::string& arguments) {
        return testing::runLunoval(arguments + " --at 2025-10-09T20:00:00Z --timezone Europe/Paris",
                                   "HOME=" + folder_.path().string() + " XDG_CONFIG_HOME=");
    }
    fs::path file(const std::string& name) const { return folder_.path() / name; }

    lunoval::testing::TempFolder folder_{"lunoval-widgets"};
};

TEST_F(WidgetCommands, RenderDrawsTheFamilySizeAtTheScale) {
    struct Case {
        const char* widget;
        std::pair<int, int> pixels;
    };
    for (const auto& [widget, pixels] :
         {Case{"--kind MoonTimesWidget --family systemMedium --scale 2", {728, 340}},
          Case{"--kind MoonPhaseWidget --family accessoryInline", {771, 78}}}) {
        const auto out = file("widget.png");
        const auto result =
            run(std::string("render ") + widget + " --location 48.85,2.35 --out " + out.string());
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(pngSize(out), pixels) << widget;
        EXPECT_TRUE(result.out.ends_with("Wrote " + out.string() + "\n")) << result.out;
    }
}

TEST_F(WidgetCommands, RenderRefusesWhatTheHostWouldNotAsk) {
    const auto medium = run("render --kind MoonPhaseWidget --family systemMedium --out x.png");
    EXPECT_EQ(medium.status, 2);
    EXPECT_NE(medium.err.find("it offers systemSmall, systemLarge"), std::string::npos);
    EXPECT_EQ(run("render --kind MoonPhaseWidget --out x.gif").status, 2);
    EXPECT_EQ(run("render --kind MoonPhaseWidget --mode sepia --out x.png").status, 2);
    EXPECT_FALSE(fs::exists(file("x.png")));
}

TEST_F(WidgetCommands, GalleryDrawsEveryWidgetInEverySizeItOffers) {
    const auto result = run("gallery --out " + file("gallery").string());
    ASSERT_EQ(result.status, 0) << result.err;
    std::size_t images = 0;
    for (const auto& entry : fs::directory_iterator(file("gallery"))) {
        images += entry.path().extension() == ".png";
    }
    EXPECT_EQ(images, 12u);
    const auto page = readWholeFile(file("gallery/index.html")).value_or("");
    for (const char* expected : {"<h2>Moon Phase</h2>", "MoonPhaseWidget-systemLarge.png",
                                 "alt=\"Moon Times, systemSmall: "}) {
        EXPECT_NE(page.find(expected), std::string::npos) << expected;
    }
    EXPECT_EQ(page.find("lunoval://settings"), std::string::npos);
}

TEST_F(WidgetCommands, APermissionPromptLinksToTheSettings) {
    const auto result = run("gallery --location-service denied --out " + file("gallery").string());
    ASSERT_EQ(result.status, 0) << result.err;
    const auto page = readWholeFile(file("gallery/index.html")).value_or("");
    // Every home-screen image links to it; the lock-screen ones have no tap target.
    std::size_t links = 0;
    for (auto at = page.find("href=\"lunoval://settings\""); at != std::string::npos;
         at = page.find("href=\"lunoval://settings\"", at + 1)) {
        ++links;
    }
    EXPECT_EQ(links, 6u);
}

TEST_F(WidgetCommands, MoonSaysWhichFileItWrote) {
    const auto result = run("moon --size 32 --out " + file("disc.png").string());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(result.out.ends_with("Wrote " + file("disc.png").string() + "\n")) << result.out;
}

TEST_F(WidgetCommands, MoonRefusesBadPhasesAndFormats) {
    for (const char* arguments :
         {"moon --phase Gibbous", "moon --out moon.jpeg", "moon --illumination 0.5",
          "moon --phase newMoon --illumination 1.5"}) {
        EXPECT_EQ(run(arguments).status, 2) << arguments;
    }
}

// The drawing commands run in a program of their own, handed the whole command line; the
// others never load the drawing libraries.
TEST_F(WidgetCommands, OnlyTheDrawingCommandsLoadTheDrawingLibraries) {
    const auto loadsCairo = [&](const std::string& arguments) {
        const auto result = testing::runLunoval(
            arguments, "LD_DEBUG=libs HOME=" + folder_.path().string() + " XDG_CONFIG_HOME=");
        EXPECT_EQ(result.status, 0) << arguments;
        return result.err.find("libcairo.so") != std::string::npos;
    };
    EXPECT_FALSE(loadsCairo("record --lat 48.85 --lng 2.35"));
    EXPECT_FALSE(loadsCairo("--location 48.85,2.35 timeline --json"));
    EXPECT_TRUE(loadsCairo("--location 48.85,2.35 render --out " + file("w.png").string()));
    EXPECT_TRUE(fs::exists(file("w.png")));

    // Each command's help, in either program, ends with the device options.
    for (const auto& [command, expected] : std::vector<std::pair<const char*, const char*>>{
             {"render", "--color-scheme TEXT:{dark,light}"},
             {"moon", "--phase"},
             {"record", "--lat"},
             {"locations update", "--timeout"},
             {"preferences get", "outputFolder or scale"}}) {
        const auto help = run(std::string(command) + " --help");
        EXPECT_EQ(help.status, 0) << command;
        for (const char* shown : {expected, "--location-service", "--quiet"}) {
            EXPECT_NE(help.out.find(shown), std::string::npos) << command << help.out;
        }
    }
    EXPECT_NE(run("--help").out.find("gallery"), std::string::npos);
}

}  // namespace
}  // namespace lunoval
