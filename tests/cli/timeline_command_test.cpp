#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include "temp_folder.hpp"

#include "platform/user_defaults.hpp"
#include "run_command.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;
using testing::CommandResult;

// Each scenario starts from an empty home, as on a fresh machine.
class TimelineCommand : public ::testing::Test {
  protected:
    [[nodiscard]] UserDefaults appGroup() const {
        return UserDefaults(home_ / ".config/lunoval/group.com.orvane.lunoval.plist");
    }

    CommandResult timeline(const std::string& service, const std::string& at) {
        auto run = testing::runLunoval(
            "timeline --json --timezone Europe/Paris --location-service " + service + " --at " + at,
            "HOME=" + home_.string() + " XDG_CONFIG_HOME=");
        EXPECT_EQ(run.status, 0) << run.err;
        entry = nlohmann::json::parse(run.out, nullptr, false);
        return run;
    }

    static bool logged(const CommandResult& run, const std::string& line) {
        return run.err.find(line + "\n") != std::string::npos;
    }

    lunoval::testing::TempFolder temp_{"lunoval-home"};
    const std::filesystem::path& home_ = temp_.path();
    nlohmann::json entry;
};

TEST_F(TimelineCommand, NotAuthorizedAsksForPermissionAndRetries) {
    const auto run = timeline("denied", "2025-10-09T08:53:20Z");
    EXPECT_EQ(entry.at("date"), 1760000000.0);
    EXPECT_EQ(entry.at("widgetData").at("needsLocationPermission"), true);
    EXPECT_TRUE(
        logged(run, "⚠️ Widget: Not authorized for widget updates - user needs to approve"));
    EXPECT_TRUE(logged(run, "ℹ️ Widget: Will retry in 15 minutes"));
}

TEST_F(TimelineCommand, AFixThenTheCacheForADay) {
    timeline("fixed:48.8566,2.3522", "2025-10-09T08:00:00Z");
    EXPECT_EQ(entry.at("widgetData").at("timezone"), "Europe/Paris");
    EXPECT_EQ(appGroup().doubleForKey("WidgetLastLocationLat"), 48.8566);

    const auto hourLater = timeline("unavailable", "2025-10-09T09:00:00Z");
    EXPECT_TRUE(logged(hourLater, "✅ Widget: Using cached location from 60.0 minutes ago"));
    EXPECT_EQ(entry.at("widgetData").at("latitude"), 48.8566);

    // That run's background request failed, and the cached point it fell back to was cached
    // again as a late answer: the cache's day starts over.
    const auto dayLater = timeline("unavailable", "2025-10-10T09:00:00Z");
    EXPECT_TRUE(logged(dayLater, "⚠️ Widget: Cached location is too old (24.0 hours)"));
}

TEST_F(TimelineCommand, ASilentServiceTimesOutToTheAppSavedPlace) {
    appGroup().setData(
        "widgetData",
        R"({"latitude":35.68,"longitude":139.77,"timezone":"Asia/Tokyo","locationName":"Tokyo"})");
    const auto run = timeline("silent", "2025-10-09T08:00:00Z");
    EXPECT_TRUE(logged(run, "⏱️ Widget: Location fetch timed out"));
    EXPECT_TRUE(logged(run, "✅ Widget: Using app-saved location as fallback: 35.68, 139.77"));
    EXPECT_EQ(entry.at("widgetData").at("timezone"), "Asia/Tokyo");
    EXPECT_EQ(entry.at("widgetData").at("locationName"), "Tokyo");
    EXPECT_FALSE(entry.at("widgetData").at("sunrise").is_null());
}

// The entry goes out first; the command then waits for the fix still on its way and caches it.
TEST_F(TimelineCommand, LateAndBackgroundFixesReachTheCache) {
    const auto late = timeline("late:9:-33.87,151.21", "2025-10-09T08:00:00Z");
    EXPECT_TRUE(entry.at("widgetData").is_null());
    EXPECT_LT(late.err.find("⏱️ Widget: Location fetch timed out"),
              late.err.find("✅ Widget: Received location: -33.87, 151.21"));
    EXPECT_EQ(appGroup().doubleForKey("WidgetLastLocationLat"), -33.87);

    const auto background = timeline("late:0.5:1.5,2.5", "2025-10-09T10:00:00Z");
    EXPECT_EQ(entry.at("widgetData").at("latitude"), -33.87);
    EXPECT_TRUE(logged(background, "✅ Widget: Received location: 1.5, 2.5"));
    EXPECT_EQ(appGroup().doubleForKey("WidgetLastLocationLat"), 1.5);
}

TEST_F(TimelineCommand, PreviewsNeverAskForALocation) {
    const auto run = testing::runLunoval("timeline --preview --json --location-service denied",
                                         "HOME=" + home_.string() + " XDG_CONFIG_HOME=");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(nlohmann::json::parse(run.out).at("widgetData").at("isPlaceholder"), true);
    EXPECT_FALSE(fs::exists(home_ / ".config"));
}

TEST_F(TimelineCommand, RejectsUnknownKindsFamiliesAndServices) {
    for (const char* arguments : {"timeline --kind ClockWidget", "timeline --family systemHuge",
                                  "timeline --location-service gps", "timeline --location 91,0",
                                  "timeline --snapshot --placeholder",
                                  // Sizes the gallery does not offer for that widget.
                                  "timeline --kind MoonPhaseWidget --family systemMedium",
                                  "timeline --kind MoonTimesWidget --family systemLarge",
                                  "timeline --kind MoonEventWidget --family accessoryInline"}) {
        const auto run = testing::runLunoval(arguments, "HOME=" + home_.string());
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_TRUE(run.err.starts_with("lunoval: ")) << arguments << run.err;
    }
}

}  // namespace
}  // namespace lunoval
