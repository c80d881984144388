#include <gtest/gtest.h>

#include <date/date.h>
#include <algorithm>

#include "astro/moon_position.hpp"
#include "astro/sun_times.hpp"
#include "eclipse/catalogue_fixture.hpp"
#include "eclipse/eclipse_parser.hpp"
#include "eclipse/eclipse_visibility.hpp"
#include "platform/calendar.hpp"

namespace lunoval {
namespace {

// Instants of greatest eclipse.
const std::string kEclipses = "04/08/2024 18:17,TSE\n03/14/2025 06:59,TLE\n";

struct Place {
    const char* name;
    const char* zone;
    double latitude;
    double longitude;
};

Solar::Observer observer(const Place& place) {
    return {place.latitude, place.longitude};
}

// The catalogue's years are counted in UTC here.
const TimeZone kUtc = TimeZone::utc();

const Place kDallas{"Dallas", "America/Chicago", 32.78, -96.80};
const Place kTokyo{"Tokyo", "Asia/Tokyo", 35.68, 139.77};
const Place kNewYork{"New York", "America/New_York", 40.71, -74.01};
const Place kLongyearbyen{"Longyearbyen", "Arctic/Longyearbyen", 78.22, 15.65};

struct LookupCase {
    Place place;
    Date entry;
    std::optional<std::string> key;
    bool visible;
};

TEST_F(Catalogue, FindsTheEclipseOfTheLocalDayAndWhetherItIsSeen) {
    const std::vector<LookupCase> cases{
        {kDallas, utc(2024, 4, 8, 17), "TSE", true},
        // 03:17 on 9 April in Tokyo, before sunrise; 8 April there has no eclipse.
        {kTokyo, utc(2024, 4, 9, 3), "TSE", false},
        {kTokyo, utc(2024, 4, 8, 3), std::nullopt, false},
        // 02:59 in New York with the full moon up.
        {kNewYork, utc(2025, 3, 14, 16), "TLE", true},
    };
    write(kEclipses);
    auto catalogue = parser();
    for (const auto& [place, entry, key, visible] : cases) {
        const auto event = catalogue.eclipseInfo(
            entry, zone(place.zone), Solar::Observer{place.latitude, place.longitude}, kUtc);
        ASSERT_EQ(event != nullptr, key.has_value()) << place.name;
        if (!event) continue;
        EXPECT_EQ(event->key, *key) << place.name;
        EXPECT_EQ(event->isVisible, visible) << place.name;
        // Without both coordinates there is nothing to hide it.
        EXPECT_TRUE(catalogue.eclipseInfo(entry, zone(place.zone), std::nullopt, kUtc)->isVisible);
    }
}

TEST_F(Catalogue, TakesTheEarliestEclipseOfTheEntrysOwnLocalDay) {
    // In New York: 23:30 on 14 March, then 00:30 and 12:30 on 16 March.
    write("03/16/2025 16:30,PSE\n03/16/2025 04:30,PLE\n03/15/2025 03:30,TLE\n");
    auto catalogue = parser();
    const auto newYork = zone("America/New_York");
    const std::vector<std::pair<Date, std::optional<std::string>>> cases{
        {utc(2025, 3, 14, 4, 1), "TLE"},
        {utc(2025, 3, 15, 16), std::nullopt},
        {utc(2025, 3, 16, 20), "PLE"},
    };
    for (const auto& [entry, key] : cases) {
        const auto event = catalogue.eclipseInfo(entry, newYork, std::nullopt, kUtc);
        EXPECT_EQ(event ? std::optional(event->key) : std::nullopt, key);
    }
}

TEST_F(Catalogue, FindsWhatAScanOfTheWholeTableFindsAcrossSkippedDays) {
    // An event every 7 hours around the day Samoa skipped (30 December 2011).
    std::string lines;
    for (int hour = 0; hour < 10 * 24; hour += 7) {
        const auto instant = utc(2011, 12, 26).addingTimeInterval(hour * 3600.0);
        lines +=
            date::format("%m/%d/%Y %H:%M",
                         date::floor<std::chrono::seconds>(
                             date::sys_time<std::chrono::duration<double>>(instant.sinceEpoch))) +
            ",TLE\n";
    }
    write(lines);
    auto catalogue = parser();
    const auto table = catalogue.parse(kUtc);
    for (const char* name : {"Pacific/Apia", "Pacific/Kiritimati", "America/St_Johns", "UTC"}) {
        const Calendar calendar(zone(name));
        for (int hour = 0; hour < 14 * 24; hour += 5) {
            const auto entry = utc(2011, 12, 24).addingTimeInterval(hour * 3600.0);
            const auto scanned = std::find_if(table->begin(), table->end(), [&](const auto& e) {
                return calendar.isDateInSameDay(e.first, entry);
            });
            const auto found = catalogue.eclipseInfo(entry, zone(name), std::nullopt, kUtc);
            EXPECT_EQ(found, scanned == table->end() ? nullptr : scanned->second) << name << hour;
        }
    }
}

TEST_F(Catalogue, AnswersWithTheTablesOwnEventForTheLatestPlace) {
    write(kEclipses);
    auto catalogue = parser();
    const auto dallas =
        catalogue.eclipseInfo(utc(2024, 4, 8, 17), zone(kDallas.zone), observer(kDallas), kUtc);
    ASSERT_TRUE(dallas && dallas->isVisible);
    const auto tokyo =
        catalogue.eclipseInfo(utc(2024, 4, 9, 3), zone(kTokyo.zone), observer(kTokyo), kUtc);
    EXPECT_EQ(tokyo, dallas);
    EXPECT_EQ(tokyo, catalogue.parse(kUtc)->at(utc(2024, 4, 8, 18, 17)));
    EXPECT_FALSE(dallas->isVisible);
}

EclipseEvent eclipse(const char* key, Date instant) {
    return {.key = key, .datetime = instant, .isLunarEvent = std::string_view(key).ends_with("LE")};
}

bool seenFrom(const Place& place, const EclipseEvent& event) {
    return isVisibleFrom(event, zone(place.zone), observer(place));
}

struct MoonDay {
    Date dayStart;
    Date rise;
    Date set;
};

MoonDay moonDay(const Place& place, int year, int month, int day) {
    const auto local = zone(place.zone);
    const auto start = *Calendar(local).date(year, month, day);
    return {start, *Solar::moonRiseSet(start, local, Solar::Crossing::rise, observer(place)),
            *Solar::moonRiseSet(start, local, Solar::Crossing::set, observer(place))};
}

TEST(EclipseVisibility, CountsFromRiseToSetWithBothEnds) {
    const auto chicago = zone(kDallas.zone);
    const auto sunrise = *Solar::sunrise(utc(2024, 4, 8, 18), chicago, observer(kDallas));
    const auto sunset = *Solar::sunset(utc(2024, 4, 8, 18), chicago, observer(kDallas));
    // In New York the moon rises after midnight and sets near noon a day after last quarter; at
    // full moon it sets at dawn and rises again at dusk.
    const auto late = moonDay(kNewYork, 2025, 3, 23);
    const auto full = moonDay(kNewYork, 2025, 3, 14);
    ASSERT_LT(late.rise, late.set);
    ASSERT_GT(full.rise, full.set);
    const std::vector<std::tuple<Place, EclipseEvent, bool>> cases{
        {kDallas, eclipse("PSE", sunrise), true},
        {kDallas, eclipse("PSE", sunrise.addingTimeInterval(-1)), false},
        {kDallas, eclipse("PSE", sunset), true},
        {kDallas, eclipse("PSE", sunset.addingTimeInterval(1)), false},
        {kNewYork, eclipse("PLE", late.rise.addingTimeInterval(-1)), false},
        {kNewYork, eclipse("PLE", late.rise), true},
        {kNewYork, eclipse("PLE", late.set), true},
        {kNewYork, eclipse("PLE", late.set.addingTimeInterval(1)), false},
        {kNewYork, eclipse("TLE", full.dayStart), true},
        {kNewYork, eclipse("TLE", full.set), true},
        {kNewYork, eclipse("TLE", full.set.addingTimeInterval(1)), false},
        {kNewYork, eclipse("TLE", full.rise.addingTimeInterval(-1)), false},
        {kNewYork, eclipse("TLE", full.rise), true},
        {kNewYork, eclipse("TLE", utc(2025, 3, 15, 3, 59)), true},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const auto& [place, event, visible] = cases[i];
        EXPECT_EQ(seenFrom(place, event), visible) << "case " << i;
    }
}

TEST(EclipseVisibility, NeedsARiseAndASetThatDay) {
    // Midsummer and midwinter sun at Longyearbyen; the December full moon circles the sky.
    EXPECT_FALSE(seenFrom(kLongyearbyen, eclipse("TSE", utc(2025, 6, 21, 12))));
    EXPECT_FALSE(seenFrom(kLongyearbyen, eclipse("TSE", utc(2025, 12, 21, 12))));
    const auto fullMoon = utc(2025, 12, 4, 12);
    ASSERT_GT(Solar::moonPosition(fullMoon, observer(kLongyearbyen)).altitude, 0);
    EXPECT_FALSE(seenFrom(kLongyearbyen, eclipse("TLE", fullMoon)));
}

}  // namespace
}  // namespace lunoval
