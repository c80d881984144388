#include "timeline/moon_widget_timeline_provider.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include "temp_folder.hpp"

namespace lunoval {
namespace {

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);  // 2025-10-09 08:53:20 UTC

// Authorized, no last fix, answers a request after a delay (never, without one), and counts
// the managers alive.
class LateLocationManager : public PlatformLocationManager {
  public:
    LateLocationManager(MainQueue& queue, std::optional<double> delay, int& alive)
        : queue_(queue), delay_(delay), alive_(alive) {
        ++alive_;
    }
    ~LateLocationManager() override { --alive_; }
    LateLocationManager(const LateLocationManager&) = delete;
    LateLocationManager& operator=(const LateLocationManager&) = delete;

    [[nodiscard]] AuthorizationStatus authorizationStatus() const override {
        return AuthorizationStatus::authorizedAlways;
    }
    [[nodiscard]] bool isAuthorizedForWidgetUpdates() const override { return true; }
    [[nodiscard]] std::optional<Location> location() const override { return std::nullopt; }
    void requestLocation() override {
        if (!delay_) return;
        answerLater(queue_, *delay_, [](auto& delegate) {
            delegate.didUpdateLocations({{-33.87, 151.21}});
        });
    }
    void startUpdatingLocation() override {}
    void stopUpdatingLocation() override {}

  private:
    MainQueue& queue_;
    std::optional<double> delay_;
    int& alive_;
};

class TimelineProvider : public ::testing::Test {
  protected:
    [[nodiscard]] UserDefaults defaults() const { return UserDefaults(folder_ / "group.plist"); }

    // A device in Paris's zone whose location managers come from `makeManager`.
    RequestContext context(std::function<std::unique_ptr<PlatformLocationManager>()> makeManager) {
        const auto paris = *TimeZone::named("Europe/Paris");
        return {.clock = queue_.clock(),
                .deviceZone = paris,
                .locale = "en_US",
                .makeLocationManager = std::move(makeManager),
                .sources = AstronomySources::shared(paris)};
    }

    MoonWidgetTimelineProvider provider(const char* service) {
        return {queue_, context([this, service] {
                    ++managersMade_;
                    return makePlatformLocationManager(*LocationService::parse(service), queue_);
                }),
                defaults()};
    }

    struct Result {
        std::optional<widgetkit::Timeline<MoonWidgetEntry>> timeline;
        std::string log;
    };

    // Runs one timeline request, letting `seconds` pass on the queue.
    Result timeline(const MoonWidgetTimelineProvider& provider, double seconds) {
        Result result;
        ::testing::internal::CaptureStdout();
        provider.timeline({}, {}, [&](auto timeline) { result.timeline = std::move(timeline); });
        queue_.advance(seconds);
        result.log = ::testing::internal::GetCapturedStdout();
        return result;
    }

    static bool logged(const Result& result, std::string_view line) {
        return result.log.find(std::string(line) + "\n") != std::string::npos;
    }

    lunoval::testing::TempFolder temp_{"lunoval-provider"};
    const std::filesystem::path& folder_ = temp_.path();
    ManualQueue queue_{kStart};
    int managersMade_ = 0;
};

TEST_F(TimelineProvider, NotAuthorizedGivesThePermissionRecordAndRetries) {
    const auto result = timeline(provider("denied"), 1);
    ASSERT_TRUE(result.timeline);
    ASSERT_EQ(result.timeline->entries.size(), 1U);
    const auto& entry = result.timeline->entries.front();
    EXPECT_EQ(entry.date, kStart);
    ASSERT_TRUE(entry.widgetData);
    EXPECT_TRUE(entry.widgetData->needsLocationPermission);
    EXPECT_EQ(entry.widgetData->timezone, "Europe/Paris");
    EXPECT_EQ(result.log,
              "🔄 Widget: Starting timeline update at 2025-10-09 08:53:20 +0000\n"
              "✅ Widget: Authorization - App: 2, Widget: false\n"
              "⚠️ Widget: Not authorized for widget updates\n"
              "⚠️ Widget: Not authorized for widget updates - user needs to approve\n"
              "ℹ️ Widget: Will retry in 15 minutes\n"
              "📅 Widget: Next update at 2025-10-09 09:08:20 +0000\n");
    // The time-out finds the request answered and stays silent.
    EXPECT_EQ(timeline(provider("denied"), 10).log.find("timed out"), std::string::npos);
}

TEST_F(TimelineProvider, AFixedLocationIsFilledInTheDeviceZoneAndCached) {
    const auto result = timeline(provider("fixed:48.8566,2.3522"), 1);
    const auto& record = result.timeline->entries.front().widgetData;
    ASSERT_TRUE(record);
    EXPECT_EQ(record->timezone, "Europe/Paris");
    EXPECT_FALSE(record->locationName);
    EXPECT_TRUE(record->sunrise && record->currentMoonPhase);
    EXPECT_TRUE(logged(result, "📍 Widget: Using current location: 48.8566, 2.3522"));
    EXPECT_TRUE(logged(result, "   Using device timezone: Europe/Paris"));
    EXPECT_FALSE(logged(result, "ℹ️ Widget: Will retry in 15 minutes"));
    EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationLat"), 48.8566);
}

TEST_F(TimelineProvider, ASilentServiceTimesOutToTheAppSavedPlace) {
    defaults().setData("widgetData",
                       R"({"latitude": -33.87, "longitude": 151.21, "timezone": "Australia/Sydney",
                           "locationName": "Sydney"})");
    const auto early = timeline(provider("silent"), 7.9);
    EXPECT_FALSE(early.timeline);
    ::testing::internal::CaptureStdout();
    queue_.advance(0.1);
    const std::string log = ::testing::internal::GetCapturedStdout();
    EXPECT_NE(log.find("⏱️ Widget: Location fetch timed out\n"
                       "ℹ️ Widget: Authorized but location not currently available\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("✅ Widget: Using app-saved location as fallback: -33.87, 151.21"),
              std::string::npos)
        << log;
}

TEST_F(TimelineProvider, ASilentServiceWithoutASavedPlaceGivesAnEmptyEntry) {
    const auto result = timeline(provider("silent"), 8);
    ASSERT_TRUE(result.timeline);
    EXPECT_FALSE(result.timeline->entries.front().widgetData);
    EXPECT_TRUE(logged(result, "ℹ️ Widget: Will retry in 15 minutes"));
}

// A fix that comes after the entry still reaches the cache, and every request's manager is
// gone within a time-out of its entry.
TEST_F(TimelineProvider, LateAndBackgroundFixesReachTheCacheAndEveryManagerEnds) {
    struct Case {
        bool cached;                  // the widget's cache holds Paris, so the entry comes at once
        std::optional<double> delay;  // when the service answers; never without one
        double entryAt, finishedAt;
        bool fixCached;
    };
    for (const auto& [cached, delay, entryAt, finishedAt, fixCached] : std::vector<Case>{
             {false, 10, 8, 10, true},
             {false, std::nullopt, 8, 16, false},
             {true, 3, 0, 3, true},
             {true, std::nullopt, 0, 8, false},
             {true, 9, 0, 8, false},
         }) {
        SCOPED_TRACE(::testing::Message() << cached << " " << delay.value_or(-1));
        std::filesystem::remove(folder_ / "group.plist");
        if (cached) {
            defaults().setObjects(
                {{"WidgetLastLocationLat", 48.85},
                 {"WidgetLastLocationLng", 2.35},
                 {"WidgetLastLocationTimestamp", queue_.now().timeIntervalSince1970()}});
        }
        int alive = 0;
        std::optional<double> answeredAt, finished;
        const double start = queue_.now().timeIntervalSince1970();
        const MoonWidgetTimelineProvider late(queue_, context([this, &alive, wait = delay] {
                                                  return std::make_unique<LateLocationManager>(
                                                      queue_, wait, alive);
                                              }),
                                              defaults());
        ::testing::internal::CaptureStdout();
        late.timeline(
            {}, {}, [&](auto) { answeredAt = queue_.now().timeIntervalSince1970() - start; },
            [&] { finished = queue_.now().timeIntervalSince1970() - start; });
        queue_.advance(30);
        ::testing::internal::GetCapturedStdout();
        EXPECT_EQ(answeredAt, entryAt);
        EXPECT_EQ(finished, finishedAt);
        EXPECT_EQ(alive, 0);
        EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationLng") == 151.21, fixCached);
    }
}

TEST_F(TimelineProvider, PreviewsAndPlaceholdersNeverAskForALocation) {
    const auto provider = this->provider("fixed:1,2");
    std::optional<MoonWidgetEntry> preview;
    provider.snapshot({}, {.isPreview = true}, [&](auto entry) { preview = entry; });
    ASSERT_TRUE(preview);
    EXPECT_TRUE(preview->widgetData->isPlaceholder);
    EXPECT_TRUE(provider.placeholder({}).widgetData->isPlaceholder);
    EXPECT_EQ(managersMade_, 0);

    std::optional<MoonWidgetEntry> snapshot;
    provider.snapshot({}, {}, [&](auto entry) { snapshot = entry; });
    ASSERT_TRUE(snapshot && snapshot->widgetData);  // answered before returning
    EXPECT_EQ(snapshot->widgetData->latitude, 1);
    EXPECT_EQ(managersMade_, 1);
}

}  // namespace
}  // namespace lunoval
