#include "timeline/widget_data_builder.hpp"

#include <gtest/gtest.h>

#include "astro/test_dates.hpp"

namespace lunoval {
namespace {

using Code = MoonPhaseEvent::PhaseType;
using testing::utc;

MoonWidgetData place(const char* zone, double latitude = 48.85, double longitude = 2.35) {
    return {.latitude = latitude, .longitude = longitude, .timezone = zone};
}

// Tables that answer the next-phase query with one fixed result, and know no eclipse.
AstronomySources answering(std::optional<NextPhase> next) {
    return {.phaseTable = [](int, int) { return std::vector<MoonPhaseEvent>{}; },
            .nextPhase = [next](Date, const TimeZone&) { return next; },
            .eclipseInfo = [](Date, const TimeZone&, Solar::Observer) { return nullptr; }};
}

TEST(Fill, AnUnknownZoneLeavesAllButTheTime) {
    auto record = place("Europe/Atlantis");
    fill(record, utc(2025, 10, 7), SunTimes::include, Solar::Tilt::none(), answering(std::nullopt));
    EXPECT_EQ(record.selectedTime, utc(2025, 10, 7));
    EXPECT_FALSE(record.sunrise || record.moonrise || record.moonAltitude ||
                 record.currentMoonPhase || record.nextPhaseTime);
}

TEST(Fill, AsksForTheEclipseOfTheInstantAtThePlaceInAKnownZone) {
    const auto total = std::make_shared<const EclipseEvent>(EclipseEvent{.key = "TSE"});
    std::vector<std::tuple<Date, std::string, double, double>> queries;
    auto sources = answering(std::nullopt);
    sources.eclipseInfo = [&](Date date, const TimeZone& zone, Solar::Observer place) {
        queries.emplace_back(date, zone.identifier(), place.latitude, place.longitude);
        return total;
    };
    auto tokyo = place("Asia/Tokyo", 35.68, 139.77);
    fill(tokyo, utc(2024, 4, 9, 3), SunTimes::include, Solar::Tilt::none(), sources);
    EXPECT_EQ(tokyo.eclipseInfo, total);
    EXPECT_EQ(
        queries,
        (std::vector{std::tuple{utc(2024, 4, 9, 3), std::string("Asia/Tokyo"), 35.68, 139.77}}));

    auto atlantis = place("Europe/Atlantis");
    fill(atlantis, utc(2024, 4, 9, 3), SunTimes::include, Solar::Tilt::none(), sources);
    EXPECT_FALSE(atlantis.eclipseInfo);
    EXPECT_EQ(queries.size(), 1U);
}

TEST(Fill, SaysWhenTheNextPhaseComes) {
    const std::vector<std::pair<std::int64_t, std::string>> cases{
        {0, "today"}, {1, "tomorrow"}, {2, "in 2 days"}, {13, "in 13 days"}, {-3, "in -3 days"}};
    for (const auto& [days, text] : cases) {
        auto record = place("UTC");
        fill(record, utc(2025, 10, 2), SunTimes::include, Solar::Tilt::none(),
             answering(NextPhase{{7, 3, 48, Code::fullMoon}, days}));
        EXPECT_EQ(record.nextPhaseTime, text);
    }
}

}  // namespace
}  // namespace lunoval
