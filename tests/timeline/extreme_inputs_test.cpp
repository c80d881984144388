#include <gtest/gtest.h>

#include <cmath>

#include "temp_folder.hpp"

#include "timeline/make_widget_data.hpp"
#include "timeline/widget_data_builder.hpp"

namespace lunoval {
namespace {

const AstronomySources kSources = AstronomySources::shared(TimeZone::utc());

Date at(double secondsSince1970) {
    return Date::fromTimeIntervalSince1970(secondsSince1970);
}

// Filled at the place and moment given: every number finite and in its range, every instant
// near the moment.
MoonWidgetData filled(const char* zone, Date date, double latitude, double longitude) {
    MoonWidgetData record{.latitude = latitude, .longitude = longitude, .timezone = zone};
    fill(record, date, SunTimes::include, Solar::Tilt::at(date), kSources);
    for (const auto& time : {record.sunrise, record.sunset, record.moonrise, record.moonset}) {
        EXPECT_LE(
            std::fabs(time.value_or(date).timeIntervalSince1970() - date.timeIntervalSince1970()),
            2 * 86400.0);
    }
    EXPECT_LE(std::fabs(record.moonAltitude.value_or(0)), 90);
    EXPECT_TRUE(record.moonAzimuth.value_or(0) >= 0 && record.moonAzimuth.value_or(0) <= 360);
    for (const auto& phase : {record.currentMoonPhase, record.nextMoonPhase}) {
        if (!phase) continue;
        EXPECT_TRUE(phase->illumination >= 0 && phase->illumination <= 1);
        EXPECT_TRUE(std::isfinite(phase->phaseAngle));
        EXPECT_LE(std::fabs(phase->tiltAngle), 180);
    }
    return record;
}

TEST(ExtremeInputs, EveryLatitudeAndTheEndsOfTimeGiveValuesOrNothing) {
    const std::vector<Date> instants{
        at(-62135596800),  // 0001-01-01
        at(-12219292800),  // 1582-10-15, the first Gregorian day
        at(-2208988860),   // 1899-12-31 23:59, just before the tables
        at(946684800),     // 2000-01-01
        at(2147483648),    // 2038-01-19 03:14:08
        at(4133980740),    // 2100-12-31 23:59, the tables' last minute
        at(253402300799),  // 9999-12-31 23:59:59
        at(1e13),          // beyond any calendar
    };
    for (const auto instant : instants) {
        for (double latitude = -90; latitude <= 90; latitude += 0.5) {
            for (const double longitude : {-180.0, 0.25, 180.0}) {
                SCOPED_TRACE(std::to_string(instant.timeIntervalSince1970()) + " at " +
                             std::to_string(latitude) + ", " + std::to_string(longitude));
                filled("UTC", instant, latitude, longitude);
            }
        }
    }
}

TEST(ExtremeInputs, DaysThatLoseOrRepeatAnHourGiveValuesOrNothing) {
    // Spring and autumn days where midnight or an hour is skipped or doubled (São Paulo 2018 and
    // Havana 2019 lost midnight, Lord Howe moves by half an hour), zones with odd offsets
    // (Kiritimati +14, Pago Pago -11, Troll +2 in summer only); each at its local midnight, noon
    // and the hour of the change. A zone no one knows leaves everything but the time.
    const std::vector<std::pair<const char*, double>> days = {
        {"America/Sao_Paulo", 1541300400}, {"America/Havana", 1552194000},
        {"Asia/Beirut", 1680382800},       {"Africa/Cairo", 1682640000},
        {"Europe/Berlin", 1711846800},     {"Europe/Berlin", 1729990800},
        {"America/New_York", 1710054000},  {"Australia/Lord_Howe", 1712412000},
        {"Pacific/Chatham", 1712412000},   {"Pacific/Kiritimati", 1735689600},
        {"Pacific/Pago_Pago", 1735689600}, {"Antarctica/Troll", 1711846800},
        {"Asia/Kathmandu", 1735689600},    {"Australia/Eucla", 1735689600},
        {"Europe/Atlantis", 1735689600}};
    for (const auto& [zone, instant] : days) {
        const bool known = TimeZone::named(zone).has_value();
        for (const double hours : {-12.0, -3.0, 0.0, 0.5, 1.0, 2.5, 12.0}) {
            const auto date = at(instant + hours * 3600);
            SCOPED_TRACE(std::string(zone) + " " + std::to_string(date.timeIntervalSince1970()));
            for (const double latitude : {-89.5, -45.0, 0.0, 45.0, 66.56, 89.5}) {
                const auto record = filled(zone, date, latitude, 10);
                EXPECT_EQ(record.selectedTime, date);
                EXPECT_EQ(record.currentMoonPhase.has_value(), known);
                EXPECT_EQ(record.moonAltitude.has_value(), known);
            }
        }
    }
}

// Building a record runs the astronomy for any number; a saved place that is not whole or not
// on the globe is kept out where the host app's document is read.
TEST(ExtremeInputs, ASavedPlaceIsReadOnlyWholeAndOnTheGlobe) {
    const lunoval::testing::TempFolder folder{"lunoval-extreme"};
    const UserDefaults defaults(folder.path() / "group.plist");
    const std::vector<std::pair<const char*, bool>> documents{
        {R"({"latitude": 90, "longitude": -180, "timezone": "UTC"})", true},
        {R"({"latitude": 90.5, "longitude": 0, "timezone": "UTC"})", false},
        {R"({"latitude": 1e300, "longitude": -1e300, "timezone": "UTC"})", false},
        {R"({"latitude": "1", "longitude": 2, "timezone": "UTC"})", false},
        {R"({"latitude": 1, "longitude": 2, "timezone": "UTC", "locationName": 4})", false},
        {"{", false},
    };
    for (const auto& [document, kept] : documents) {
        defaults.setData("widgetData", document);
        EXPECT_EQ(loadFromAppGroup(defaults, Date{}).has_value(), kept) << document;
    }
}

}  // namespace
}  // namespace lunoval
