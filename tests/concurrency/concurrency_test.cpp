// Many threads at once on the process-wide tables (first loads included) and on the provider's
// request paths. The regular suite checks the answers; the ThreadSanitizer build checks that
// nothing races.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>
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
    threads.reserve(kThreads);
    for (int index = 0; index < kThreads; ++index) threads.emplace_back(work, index);
}

struct Place {
    double latitude;
    double longitude;
    const char* zone;
};

const std::vector<Place> kPlaces = {
    {48.8566, 2.3522, "Europe/Paris"},    {32.78, -96.80, "America/Chicago"},
    {-33.87, 151.21, "Australia/Sydney"}, {69.65, 18.96, "Europe/Oslo"},
    {-0.18, -78.47, "America/Guayaquil"}, {35.68, 139.77, "Asia/Tokyo"},
    {64.18, -51.72, "America/Nuuk"},      {-77.85, 166.67, "Antarctica/McMurdo"},
};

// Eclipse days and ordinary ones, so the lookups find events and miss them.
const std::vector<double> kInstants = {
    1712600000,  // 2024-04-08, total solar
    1741950000,  // 2025-03-14, total lunar
    1757260000,  // 2025-09-07, total lunar
    1760000000,  // 2025-10-09
    1786500000,  // 2026-08-12, total solar
    1800000000,  // 2027-01-15
};

// Everything a record holds but the eclipse's visibility, which the lookups for other places
// overwrite on the shared event as they go.
std::string withoutVisibility(MoonWidgetData record) {
    const auto key = record.eclipseInfo ? record.eclipseInfo->key : "none";
    record.eclipseInfo = nullptr;
    return encodeWidgetData(record) + key;
}

std::vector<std::string> fillAll(const AstronomySources& sources, int rotation) {
    std::vector<std::string> records;
    for (std::size_t i = 0; i < kPlaces.size() * kInstants.size(); ++i) {
        const std::size_t n =
            (i + static_cast<std::size_t>(rotation) * 7) % (kPlaces.size() * kInstants.size());
        const auto& place = kPlaces[n % kPlaces.size()];
        const auto date = Date::fromTimeIntervalSince1970(kInstants[n / kPlaces.size()]);
        MoonWidgetData record{
            .latitude = place.latitude, .longitude = place.longitude, .timezone = place.zone};
        fill(record, date, SunTimes::include, Solar::Tilt::at(date), sources);
        records.push_back(withoutVisibility(record));
    }
    std::sort(records.begin(), records.end());
    return records;
}

// The tables of fresh managers, so the threads race to load them.
AstronomySources freshSources(MoonPhaseDataManager& phases, EclipseParser& eclipses) {
    return {
        .phaseTable = [&phases](int year, int month) { return phases.events(year, month); },
        .nextPhase = [&phases](Date date,
                               const TimeZone& zone) { return phases.nextPhase(date, zone); },
        .eclipseInfo =
            [&eclipses](Date date, const TimeZone& zone, Solar::Observer place) {
                return eclipses.eclipseInfo(date, zone, place, TimeZone::utc());
            },
    };
}

TEST(Concurrency, FillsOnManyThreadsAnswerAsOneThreadDoes) {
    MoonPhaseDataManager phases(BundleLocator::standard());
    EclipseParser eclipses(BundleLocator::standard());
    const auto sources = freshSources(phases, eclipses);
    std::vector<std::vector<std::string>> answers(kThreads);
    onThreads([&](int index) { answers[index] = fillAll(sources, index); });

    const auto expected = fillAll(AstronomySources::shared(TimeZone::utc()), 0);
    for (const auto& answer : answers) EXPECT_EQ(answer, expected);
}

TEST(Concurrency, EveryYearOfThePhaseTablesLoadsWholeOnManyThreads) {
    MoonPhaseDataManager shared(BundleLocator::standard());
    std::vector<std::vector<std::shared_ptr<const PhaseYear>>> loaded(kThreads);
    onThreads([&](int index) {
        for (int year = 1900; year <= 2100; ++year) {
            const int asked = index % 2 == 0 ? year : 4000 - year;
            loaded[index].push_back(shared.loadYear(asked));
            shared.events(asked, 1 + year % 12);
        }
    });
    // Two threads that miss together may both load a year; the later store wins, so a
    // thread may hold either copy, but every copy is a whole table.
    for (const auto& years : loaded) {
        ASSERT_EQ(years.size(), 201U);
        for (const auto& year : years) EXPECT_EQ(year ? year->size() : 0, 12U);
    }
}

std::vector<std::optional<EclipseEvent>> eclipsesSeenFrom(EclipseParser& parser,
                                                          const Place& place) {
    std::vector<std::optional<EclipseEvent>> found;
    for (const double instant : kInstants) {
        const auto event = parser.eclipseInfo(
            Date::fromTimeIntervalSince1970(instant), *TimeZone::named(place.zone),
            Solar::Observer{place.latitude, place.longitude}, TimeZone::utc());
        found.push_back(event ? std::optional(*event) : std::nullopt);
    }
    return found;
}

TEST(Concurrency, EclipseLookupsOnManyThreadsFindWhatOneThreadFinds) {
    EclipseParser parser(BundleLocator::standard());
    std::vector<std::vector<std::optional<EclipseEvent>>> found(kThreads);
    onThreads([&](int index) {
        found[index] = eclipsesSeenFrom(parser, kPlaces[static_cast<std::size_t>(index)]);
    });
    // Events compare by key and instant: two threads that miss together may both parse the
    // catalogue, so equal events need not be the same object.
    for (std::size_t index = 0; index < found.size(); ++index) {
        EXPECT_EQ(found[index], eclipsesSeenFrom(EclipseParser::shared(), kPlaces[index]));
    }
}

// Answers from a fix or without one, and a place of its own: requests that complete on the
// calling thread and requests completed later on the main queue.
const std::vector<std::string> kServices = {
    "fixed:48.8566,2.3522", "unavailable", "denied",       "fixed:-33.87,151.21",
    "fixed:69.65,18.96",    "unavailable", "undetermined", "fixed:35.68,139.77",
};

TEST(Concurrency, TimelineRequestsFromManyThreadsEachAnswerOnce) {
    const lunoval::testing::TempFolder folder("lunoval-concurrency");
    const UserDefaults defaults(folder.path() / "group.plist");
    EventLoopQueue queue;
    std::atomic<int> answered = 0;
    std::mutex resultsMutex;
    std::vector<std::pair<std::string, MoonWidgetEntry>> results;

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
            results.emplace_back(service, timeline.entries.at(0));
            ++answered;
        });
    });
    queue.runUntil([&] { return answered == kThreads; });
    queue.runDue();

    ASSERT_EQ(results.size(), static_cast<std::size_t>(kThreads));
    std::set<std::pair<double, double>> fixes;
    for (const auto& service : kServices) {
        if (service.starts_with("fixed:")) {
            const auto fix = LocationService::parse(service)->fix;
            fixes.emplace(fix.latitude, fix.longitude);
        }
    }
    for (const auto& [service, entry] : results) {
        const auto& record = entry.widgetData;
        if (service == "denied" || service == "undetermined") {
            EXPECT_TRUE(record && record->needsLocationPermission) << service;
        } else if (service.starts_with("fixed:")) {
            ASSERT_TRUE(record) << service;
            EXPECT_EQ(service, "fixed:" + doubleDescription(record->latitude) + "," +
                                   doubleDescription(record->longitude));
        } else if (record) {
            // Without a fix of its own a request may take another's from the cache: whole.
            EXPECT_TRUE(fixes.contains({record->latitude, record->longitude})) << service;
        }
    }
    // Concurrent writers of the widget's cache leave a whole file holding one of the fixes.
    EXPECT_TRUE(readDictionaryFile(folder.path() / "group.plist").dictionary);
    EXPECT_TRUE(defaults.doubleForKey("WidgetLastLocationLat"));
}

}  // namespace
}  // namespace lunoval
