#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>
#include "temp_folder.hpp"

#include "timeline/make_widget_data.hpp"
#include "timeline/widget_data_builder.hpp"

namespace lunoval {
namespace {

const AstronomySources kSources = AstronomySources::shared(TimeZone::utc());

Date at(double secondsSince1970) {
    return Date::fromTimeIntervalSince1970(secondsSince1970);
}

// Every number a record holds is finite and in its range; every instant lies near the day asked.
void expectSane(const MoonWidgetData& record, Date asked) {
    constexpr double kTwoDays = 2 * 86400;
    for (const auto& time : {record.sunrise, record.sunset, record.moonrise, record.moonset}) {
        if (time) {
            EXPECT_LE(std::fabs(time->timeIntervalSince1970() - asked.timeIntervalSince1970()),
                      kTwoDays);
        }
    }
    EXPECT_LE(std::fabs(record.moonAltitude.value_or(0)), 90);
    EXPECT_TRUE(record.moonAzimuth.value_or(0) >= 0 && record.moonAzimuth.value_or(0) <= 360);
    for (const auto& phase : {record.currentMoonPhase, record.nextMoonPhase}) {
        if (!phase) continue;
        EXPECT_TRUE(phase->illumination >= 0 && phase->illumination <= 1);
        EXPECT_TRUE(std::isfinite(phase->phaseAngle));
        EXPECT_LE(std::fabs(phase->tiltAngle), 180);
    }
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
    };
    for (const auto instant : instants) {
        for (double latitude = -90; latitude <= 90; latitude += 0.5) {
            for (const double longitude : {-180.0, 0.25, 180.0}) {
                SCOPED_TRACE(std::to_string(instant.timeIntervalSince1970()) + " at " +
                             std::to_string(latitude) + ", " + std::to_string(longitude));
                MoonWidgetData record{
                    .latitude = latitude, .longitude = longitude, .timezone = "UTC"};
                fill(record, instant, SunTimes::include, Solar::Tilt::at(instant), kSources);
                expectSane(record, instant);
            }
        }
    }
}

TEST(ExtremeInputs, DaysThatLoseOrRepeatAnHourGiveValuesOrNothing) {
    // Spring and autumn days where midnight or an hour is skipped or doubled, and zones with
    // odd offsets; each at its local midnight, noon and the hour of the change.
    const std::vector<std::pair<const char*, double>> days{
        {"America/Sao_Paulo", 1541300400},    // 2018-11-04: midnight did not happen
        {"America/Havana", 1552194000},       // 2019-03-10: midnight did not happen
        {"Asia/Beirut", 1680382800},          // 2023-04-02
        {"Africa/Cairo", 1682640000},         // 2023-04-28
        {"Europe/Berlin", 1711846800},        // 2024-03-31
        {"Europe/Berlin", 1729990800},        // 2024-10-27
        {"America/New_York", 1710054000},     // 2024-03-10
        {"Australia/Lord_Howe", 1712412000},  // 2024-04-07: half an hour back
        {"Pacific/Chatham", 1712412000},     {"Pacific/Kiritimati", 1735689600},  // +14
        {"Pacific/Pago_Pago", 1735689600},                                        // -11
        {"Antarctica/Troll", 1711846800},  // +2 in summer, 0 in winter
        {"Asia/Kathmandu", 1735689600},      {"Australia/Eucla", 1735689600},
    };
    for (const auto& [zone, instant] : days) {
        for (const double hours : {-12.0, -3.0, 0.0, 0.5, 1.0, 2.5, 12.0}) {
            const auto date = at(instant + hours * 3600);
            SCOPED_TRACE(std::string(zone) + " " + std::to_string(date.timeIntervalSince1970()));
            for (const double latitude : {-89.5, -45.0, 0.0, 45.0, 66.56, 89.5}) {
                MoonWidgetData record{.latitude = latitude, .longitude = 10.0, .timezone = zone};
                fill(record, date, SunTimes::include, Solar::Tilt::at(date), kSources);
                expectSane(record, date);
                EXPECT_TRUE(record.currentMoonPhase.has_value());
            }
        }
    }
}

// Building a record runs the astronomy for any number; what no fix can hold is kept out where
// damaged files are read (the widget's cache has its own test).
TEST(ExtremeInputs, ASavedPlaceOffTheGlobeIsNoSavedPlace) {
    const lunoval::testing::TempFolder folder{"lunoval-extreme"};
    const UserDefaults defaults(folder.path() / "group.plist");
    for (const auto& [latitude, longitude, kept] : std::vector<std::tuple<double, double, bool>>{
             {90, -180, true}, {90.5, 0, false}, {0, 180.5, false}, {1e300, -1e300, false}}) {
        defaults.setData(
            "widgetData",
            nlohmann::json{{"latitude", latitude}, {"longitude", longitude}, {"timezone", "UTC"}}
                .dump());
        EXPECT_EQ(loadFromAppGroup(defaults, Date{}).has_value(), kept)
            << latitude << ", " << longitude;
    }
}

}  // namespace
}  // namespace lunoval
