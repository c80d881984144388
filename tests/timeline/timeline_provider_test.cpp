#include "timeline/moon_widget_timeline_provider.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include "temp_folder.hpp"

#include "platform/number_text.hpp"

namespace lunoval {
namespace {

// Where an entry's record puts the widget, and whether it was filled in.
std::string summary(const std::optional<MoonWidgetData>& record) {
    if (!record) return "none";
    if (record->needsLocationPermission) return "permission in " + record->timezone;
    if (!record->currentMoonPhase || !record->sunrise) return "unfilled";
    return doubleDescription(record->latitude) + " in " + record->timezone;
}

class TimelineProvider : public ::testing::Test {
  protected:
    [[nodiscard]] UserDefaults defaults() const { return UserDefaults(folder_ / "group.plist"); }

    // A device in Paris's zone whose location service is `service`.
    MoonWidgetTimelineProvider provider(std::string service) {
        const auto paris = *TimeZone::named("Europe/Paris");
        return {queue_,
                {.clock = queue_.clock(),
                 .deviceZone = paris,
                 .locale = "en_US",
                 .makeLocationManager =
                     [this, service] {
                         ++managersMade_;
                         return makePlatformLocationManager(*LocationService::parse(service),
                                                            queue_);
                     },
                 .sources = AstronomySources::shared(paris)},
                defaults()};
    }

    lunoval::testing::TempFolder temp_{"lunoval-provider"};
    const std::filesystem::path& folder_ = temp_.path();
    ManualQueue queue_{Date::fromTimeIntervalSince1970(1760000000)};
    int managersMade_ = 0;
};

// The entry comes from a fix, else the widget's cache, else at the 8 s time-out from the host
// app's saved place; a fix that comes after the entry still reaches the cache, and every fetch
// ends within a time-out of its entry.
TEST_F(TimelineProvider, AnswersOnceInTimeAndKeepsALateFix) {
    struct Case {
        const char* service;
        bool cached;  // the widget's cache holds a fresh fix in Paris
        bool saved;   // the host app saved Sydney
        double entryAt, finishedAt;
        const char* entry;
        double cachedLongitude;  // afterwards
    };
    for (const auto& c : std::vector<Case>{
             {"denied", false, false, 0, 0, "permission in Europe/Paris", 0},
             {"fixed:48.8566,2.3522", false, false, 0, 0, "48.8566 in Europe/Paris", 2.3522},
             {"silent", false, true, 8, 16, "-33.87 in Australia/Sydney", 0},
             {"silent", false, false, 8, 16, "none", 0},
             {"late:10:-33.87,151.21", false, false, 8, 10, "none", 151.21},
             {"late:3:-33.87,151.21", true, false, 0, 3, "48.85 in Europe/Paris", 151.21},
             {"late:9:-33.87,151.21", true, false, 0, 8, "48.85 in Europe/Paris", 2.35},
             {"silent", true, false, 0, 8, "48.85 in Europe/Paris", 2.35},
         }) {
        SCOPED_TRACE(::testing::Message() << c.service << " " << c.cached << c.saved);
        std::filesystem::remove(folder_ / "group.plist");
        if (c.cached) {
            defaults().setObjects(
                {{"WidgetLastLocationLat", 48.85},
                 {"WidgetLastLocationLng", 2.35},
                 {"WidgetLastLocationTimestamp", queue_.now().timeIntervalSince1970()}});
        }
        if (c.saved) {
            defaults().setData("widgetData", R"({"latitude": -33.87, "longitude": 151.21,
                                                 "timezone": "Australia/Sydney"})");
        }
        const double start = queue_.now().timeIntervalSince1970();
        std::optional<double> answeredAt, finishedAt;
        std::string entry;
        provider(c.service).timeline(
            {}, {},
            [&](auto timeline) {
                answeredAt = queue_.now().timeIntervalSince1970() - start;
                entry = summary(timeline.entries.at(0).widgetData);
            },
            [&] { finishedAt = queue_.now().timeIntervalSince1970() - start; });
        queue_.advance(30);
        EXPECT_EQ(answeredAt, c.entryAt);
        EXPECT_EQ(finishedAt, c.finishedAt);
        EXPECT_EQ(entry, c.entry);
        EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationLng").value_or(0), c.cachedLongitude);
    }
}

TEST_F(TimelineProvider, PreviewsAndPlaceholdersNeverAskForALocation) {
    const auto provider = this->provider("fixed:1.5,2");
    std::optional<MoonWidgetEntry> preview;
    provider.snapshot({}, {.isPreview = true}, [&](auto entry) { preview = entry; });
    ASSERT_TRUE(preview);
    EXPECT_TRUE(preview->widgetData->isPlaceholder);
    EXPECT_TRUE(provider.placeholder({}).widgetData->isPlaceholder);
    EXPECT_EQ(managersMade_, 0);

    std::optional<MoonWidgetEntry> snapshot;
    provider.snapshot({}, {}, [&](auto entry) { snapshot = entry; });
    ASSERT_TRUE(snapshot);  // answered before returning
    EXPECT_EQ(summary(snapshot->widgetData), "1.5 in Europe/Paris");
    EXPECT_EQ(managersMade_, 1);
}

}  // namespace
}  // namespace lunoval
