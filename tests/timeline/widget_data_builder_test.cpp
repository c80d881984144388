#include "timeline/widget_data_builder.hpp"

#include <gtest/gtest.h>

#include "platform/calendar.hpp"

namespace lunoval {
namespace {

using Code = MoonPhaseEvent::PhaseType;

Date utc(int year, int month, int day, int hour = 0, int minute = 0) {
    return *Calendar(TimeZone::utc()).date(year, month, day, hour, minute);
}

MoonWidgetData place(const char* zone, double latitude = 48.85, double longitude = 2.35) {
    return {.latitude = latitude, .longitude = longitude, .timezone = zone};
}

// Tables that answer the next-phase query with one fixed result, and know no eclipse.
AstronomySources answering(std::optional<NextPhase> next) {
    return {.phaseTable = [](int, int) { return std::vector<MoonPhaseEvent>{}; },
            .nextPhase = [next](Date, const TimeZone&) { return next; },
            .eclipseInfo = [](Date, const TimeZone&, double, double) { return nullptr; }};
}

TEST(Fill, AnUnknownZoneLeavesAllButTheTime) {
    auto record = place("Europe/Atlantis");
    fill(record, utc(2025, 10, 7), true, std::nullopt, answering(std::nullopt));
    EXPECT_EQ(record.selectedTime, utc(2025, 10, 7));
    EXPECT_FALSE(record.sunrise || record.moonrise || record.moonAltitude ||
                 record.currentMoonPhase || record.nextPhaseTime);
}

struct EclipseQuery {
    Date date;
    std::string zone;
    double latitude;
    double longitude;
};

TEST(Fill, TakesTheEclipseOfTheLocalDayAtThePlace) {
    auto total = std::make_shared<const EclipseEvent>(
        EclipseEvent{.key = "TSE", .datetime = utc(2024, 4, 8, 18, 17), .isVisible = false});
    std::vector<EclipseQuery> queries;
    auto sources = answering(std::nullopt);
    sources.eclipseInfo = [&](Date date, const TimeZone& zone, double latitude, double longitude) {
        queries.push_back({date, zone.identifier(), latitude, longitude});
        return total;
    };
    auto tokyo = place("Asia/Tokyo", 35.68, 139.77);
    fill(tokyo, utc(2024, 4, 9, 3), true, std::nullopt, sources);
    EXPECT_EQ(tokyo.eclipseInfo, total);
    ASSERT_EQ(queries.size(), 1U);
    EXPECT_EQ(queries[0].date, utc(2024, 4, 9, 3));
    EXPECT_EQ(queries[0].zone, "Asia/Tokyo");
    EXPECT_EQ(queries[0].latitude, 35.68);
    EXPECT_EQ(queries[0].longitude, 139.77);

    auto atlantis = place("Europe/Atlantis");
    fill(atlantis, utc(2024, 4, 9, 3), true, std::nullopt, sources);
    EXPECT_FALSE(atlantis.eclipseInfo);
    EXPECT_EQ(queries.size(), 1U);
}

TEST(Fill, FillsEveryAstronomicalField) {
    auto record = place("Europe/Paris");
    fill(record, utc(2025, 10, 12, 21), true, utc(2025, 10, 12, 21), answering(std::nullopt));
    EXPECT_TRUE(record.sunrise && record.sunset && record.moonrise && record.moonset);
    EXPECT_TRUE(record.moonAltitude && record.moonAzimuth && record.currentMoonPhase);
    EXPECT_FALSE(record.nextMoonPhase || record.nextPhaseTime);
}

TEST(Fill, KeepsMoonPositionBelowTheHorizonAndSkipsSunTimesInAPolarNight) {
    // Days before the new moon of 2025-06-25 the moon keeps near the sun: down all day at 80 S.
    auto record = place("Antarctica/McMurdo", -80, 166);
    fill(record, utc(2025, 6, 21, 12), true, std::nullopt, answering(std::nullopt));
    EXPECT_FALSE(record.sunrise || record.sunset);
    ASSERT_TRUE(record.moonAltitude);
    EXPECT_LT(*record.moonAltitude, 0);
}

TEST(Fill, SaysWhenTheNextPhaseComes) {
    const std::vector<std::pair<std::int64_t, std::string>> cases{
        {0, "today"}, {1, "tomorrow"}, {2, "in 2 days"}, {13, "in 13 days"}, {-3, "in -3 days"}};
    for (const auto& [days, text] : cases) {
        auto record = place("UTC");
        fill(record, utc(2025, 10, 2), true, std::nullopt,
             answering(NextPhase{{7, 3, 48, Code::fullMoon}, days}));
        EXPECT_EQ(record.nextPhaseTime, text);
    }
}

TEST(Fill, TheNextPhaseIsTakenAtTheEventOfTheLocalMonth) {
    // 20:00 UTC on 31 October is already 1 November in Tokyo, so day 5 means 5 November.
    auto tokyo = place("Asia/Tokyo", 35.68, 139.77);
    fill(tokyo, utc(2025, 10, 31, 20), true, std::nullopt,
         answering(NextPhase{{5, 13, 19, Code::fullMoon}, 4}));
    auto direct = place("Asia/Tokyo", 35.68, 139.77);
    fill(direct, utc(2025, 11, 5, 13, 19), true, std::nullopt, answering(std::nullopt));
    ASSERT_TRUE(tokyo.nextMoonPhase);
    EXPECT_EQ(tokyo.nextMoonPhase->illumination, direct.currentMoonPhase->illumination);
}

TEST(Fill, UsesTheShippedTablesForTheNextPhase) {
    // Full moon 2025-10-07 03:48 UTC; from 2 October that is five days on.
    auto record = place("UTC", 51.48, 0);
    fill(record, utc(2025, 10, 2, 12), true, std::nullopt);
    EXPECT_EQ(record.nextPhaseTime, "in 5 days");
    ASSERT_TRUE(record.nextMoonPhase);
    EXPECT_EQ(record.nextMoonPhase->phaseType, Solar::PhaseType::fullMoon);
    EXPECT_GT(record.nextMoonPhase->illumination, 0.99);
}

}  // namespace
}  // namespace lunoval
