// Many threads at once on the process-wide tables (first loads included) and on the provider's
// request paths. The regular suite checks the answers against one thread's; the
// ThreadSanitizer build checks that nothing races.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "eclipse/eclipse_parser.hpp"
#include "phases/moon_phase_data_manager.hpp"
#include "platform/number_text.hpp"
#include "platform/property_value.hpp"
#include "temp_folder.hpp"
#include "timeline/moon_widget_timeline_provider.hpp"
#include "timeline/widget_data_builder.hpp"

namespace lunoval {
namespace {

constexpr int kThreads = 8;

// Runs work(0) … work(kThreads - 1), each on its own thread, and waits for all of them.
template <class Work>
void onThreads(Work work) {
    std::vector<std::jthread> threads;
    for (int index = 0; index < kThreads; ++index) threads.emplace_back(work, index);
}

const std::vector<std::tuple<double, double, const char*>> kPlaces = {
    {48.8566, 2.3522, "Europe/Paris"},    {32.78, -96.80, "America/Chicago"},
    {-33.87, 151.21, "Australia/Sydney"}, {69.65, 18.96, "Europe/Oslo"},
    {-0.18, -78.47, "America/Guayaquil"}, {35.68, 139.77, "Asia/Tokyo"},
    {64.18, -51.72, "America/Nuuk"},      {-77.85, 166.67, "Antarctica/McMurdo"}};

// Eclipse days (2024-04-08, 2025-03-14, 2025-09-07, 2026-08-12) and ordinary ones, so the
// lookups find events and miss them.
const std::vector<double> kInstants = {1712600000, 1741950000, 1757260000,
                                       1760000000, 1786500000, 1800000000};

// Every place at every instant, starting at a rotation of its own, sorted. The eclipse's
// visibility is left out: lookups for other places overwrite it on the shared event.
std::vector<std::string> fillAll(const AstronomySources& sources, int rotation) {
    const std::size_t count = kPlaces.size() * kInstants.size();
    std::vector<std::string> records;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t n = (i + static_cast<std::size_t>(rotation) * 7) % count;
        const auto& [latitude, longitude, zone] = kPlaces[n % kPlaces.size()];
        const auto date = Date::fromTimeIntervalSince1970(kInstants[n / kPlaces.size()]);
        MoonWidgetData record{.latitude = latitude, .longitude = longitude, .timezone = zone};
        fill(record, date, SunTimes::include, Solar::Tilt::at(date), sources);
        const auto key = record.eclipseInfo ? record.eclipseInfo->key : "none";
        record.eclipseInfo = nullptr;
        records.push_back(recordJson(record).dump() + key);
    }
    std::sort(records.begin(), records.end());
    return records;
}

TEST(Concurrency, FillsOnManyThreadsAnswerAsOneThreadDoes) {
    // Fresh tables, so the threads race to load them.
    MoonPhaseDataManager phases(BundleLocator::standard());
    EclipseParser eclipses(BundleLocator::standard());
    const AstronomySources sources{
        .phaseTable = [&phases](int year, int month) { return phases.events(year, month); },
        .nextPhase = [&phases](Date date,
                               const TimeZone& zone) { return phases.nextPhase(date, zone); },
        .eclipseInfo =
            [&eclipses](Date date, const TimeZone& zone, Solar::Observer place) {
                return eclipses.eclipseInfo(date, zone, place, TimeZone::utc());
            },
    };
    std::vector<std::vector<std::string>> answers(kThreads);
    onThreads([&](int index) { answers[index] = fillAll(sources, index); });

    const auto expected = fillAll(AstronomySources::shared(TimeZone::utc()), 0);
    for (const auto& answer : answers) EXPECT_EQ(answer, expected);
}

std::string place(double latitude, double longitude) {
    return doubleDescription(latitude) + "," + doubleDescription(longitude);
}

// Where the entry puts the widget, if anywhere.
std::string answer(const std::optional<MoonWidgetData>& record) {
    if (!record) return "none";
    return record->needsLocationPermission ? "permission"
                                           : place(record->latitude, record->longitude);
}

// Requests completed on the calling thread and later on the main queue, with fixes of their
// own or none.
const std::vector<std::string> kServices = {
    "fixed:48.8566,2.3522", "unavailable", "denied",       "fixed:-33.87,151.21",
    "fixed:69.65,18.96",    "unavailable", "undetermined", "fixed:35.68,139.77"};

TEST(Concurrency, TimelineRequestsFromManyThreadsEachAnswerOnce) {
    const lunoval::testing::TempFolder folder("lunoval-concurrency");
    const UserDefaults defaults(folder.path() / "group.plist");
    EventLoopQueue queue;
    std::atomic<int> answered = 0;
    std::mutex resultsMutex;
    std::vector<std::pair<std::string, std::string>> results;

    onThreads([&](int index) {
        const auto& service = kServices[static_cast<std::size_t>(index)];
        const auto utc = TimeZone::utc();
        const MoonWidgetTimelineProvider provider(
            queue,
            {.clock = systemClock(),
             .deviceZone = utc,
             .locale = "en_US",
             .makeLocationManager =
                 [&queue, service] {
                     return makePlatformLocationManager(*LocationService::parse(service), queue);
                 },
             .sources = AstronomySources::shared(utc)},
            defaults);
        provider.timeline({}, {}, [&, service](widgetkit::Timeline<MoonWidgetEntry> timeline) {
            const std::scoped_lock lock(resultsMutex);
            results.emplace_back(service, answer(timeline.entries.at(0).widgetData));
            ++answered;
        });
    });
    queue.runUntil([&] { return answered == kThreads; });
    queue.runDue();

    std::set<std::string> fixes;
    for (const auto& service : kServices) {
        if (service.starts_with("fixed:")) fixes.insert(service.substr(6));
    }
    ASSERT_EQ(results.size(), kServices.size());
    for (const auto& [service, where] : results) {
        if (service.starts_with("fixed:")) {
            EXPECT_EQ(where, service.substr(6));
        } else if (service == "denied" || service == "undetermined") {
            EXPECT_EQ(where, "permission");
        } else {
            // Without a fix of its own a request may take another's from the cache: whole.
            EXPECT_TRUE(where == "none" || fixes.contains(where)) << where;
        }
    }
    // Concurrent writers of the widget's cache leave a whole file holding one of the fixes.
    EXPECT_TRUE(readDictionaryFile(folder.path() / "group.plist").dictionary);
    EXPECT_TRUE(fixes.contains(place(*defaults.doubleForKey("WidgetLastLocationLat"),
                                     *defaults.doubleForKey("WidgetLastLocationLng"))));
}

}  // namespace
}  // namespace lunoval
