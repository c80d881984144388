#include "views/moon_elevation_chart.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <tuple>
#include <vector>

#include "astro/moon_position.hpp"
#include "astro/test_dates.hpp"
#include "display_list_queries.hpp"
#include "fake_text_measurer.hpp"
#include "timeline/elevation_day.hpp"

namespace lunoval {
namespace {

using testing::all;
using ::testing::Contains;
using ::testing::Not;
using testing::utc;
using testing::zone;
using ui::Color;
using ui::DrawSymbol;
using ui::Point;
using ui::StrokePath;

constexpr ui::Size kChart{240, 100};
constexpr double kParisLat = 48.8566;
constexpr double kParisLng = 2.3522;
// Paris days start at 22:00 UTC in summer time; on 10 June 2025 the moon sets in the morning
// and rises in the evening.
const Date kParisDay = utc(2025, 6, 9, 22);

const testing::FakeTextMeasurer kMeasurer;

ui::DisplayList draw(const MoonElevationChart& chart) {
    return ui::render(chart.body(), kChart, {kMeasurer, {}});
}

// The chart of a record's day as the medium widget gets it; a record whose zone is unknown
// is drawn in the device's, UTC here.
MoonElevationChart chartOf(const MoonWidgetData& record, const std::string& locale = "en_US") {
    const auto zone = TimeZone::named(record.timezone).value_or(TimeZone::utc());
    return {.day = elevationDay(record, zone), .format = {.locale = locale, .zone = zone}};
}

MoonWidgetData parisDay() {
    const auto paris = zone("Europe/Paris");
    const Solar::Observer place{kParisLat, kParisLng};
    return {.latitude = kParisLat,
            .longitude = kParisLng,
            .timezone = "Europe/Paris",
            .selectedTime = utc(2025, 6, 10, 9),
            .moonrise = Solar::moonRiseSet(kParisDay, paris, Solar::Crossing::rise, place),
            .moonset = Solar::moonRiseSet(kParisDay, paris, Solar::Crossing::set, place)};
}

MoonElevationChart parisChart() {
    return chartOf(parisDay());
}

DrawSymbol symbolNamed(const ui::DisplayList& list, const std::string& name) {
    for (const auto& symbol : all<DrawSymbol>(list)) {
        if (symbol.name == name) return symbol;
    }
    ADD_FAILURE() << "no " << name;
    return {};
}

// The canvas draws from its own origin, which is the chart's: the chart fills the whole list.
std::vector<std::pair<Point, Point>> straightLines(const ui::DisplayList& list, bool dashed) {
    std::vector<std::pair<Point, Point>> lines;
    for (const auto& stroke : all<StrokePath>(list)) {
        const auto& elements = stroke.path.elements;
        if (elements.size() != 2 || stroke.style.dash.empty() == dashed) continue;
        lines.emplace_back(std::get<ui::Path::MoveTo>(elements[0]).to,
                           std::get<ui::Path::LineTo>(elements[1]).to);
    }
    return lines;
}

double horizonY(const ui::DisplayList& list) {
    for (const auto& [from, to] : straightLines(list, false)) {
        if (from.x == 0 && to.x == kChart.width && from.y == to.y) return from.y;
    }
    ADD_FAILURE() << "no horizon";
    return 0;
}

const Color kCyan = ui::systemColor(ui::SystemColor::cyan, ui::ColorScheme::dark);
const Color kPurple = ui::systemColor(ui::SystemColor::purple, ui::ColorScheme::dark);

TEST(MoonElevationChart, MarksRiseAndSetOnTheHorizonWithDashedGuidesAbove) {
    const auto record = parisDay();
    ASSERT_TRUE(record.moonrise && record.moonset);
    const auto list = draw(chartOf(record));
    const double horizon = horizonY(list);
    std::vector<StrokePath> guides;
    for (const auto& stroke : all<StrokePath>(list)) {
        if (!stroke.style.dash.empty()) guides.push_back(stroke);
    }
    ASSERT_EQ(guides.size(), 2u);

    const std::vector<std::tuple<std::string, Date, Color>> cases{
        {"moonrise.fill", *record.moonrise, kCyan},
        {"moonset.fill", *record.moonset, kPurple},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const auto& [name, instant, color] = cases[i];
        const auto symbol = symbolNamed(list, name);
        const auto center = symbol.frame.center();
        const double x = kChart.width *
                         (instant.timeIntervalSince1970() - kParisDay.timeIntervalSince1970()) /
                         86'400;
        EXPECT_NEAR(center.x, x, 1e-9) << name;
        // The engine's rise and set are where its altitude crosses the horizon.
        EXPECT_NEAR(center.y, horizon, 1.0) << name;
        EXPECT_EQ(symbol.color, color) << name;
        EXPECT_EQ(std::get<Color>(guides[i].paint), color.opacity(0.6));
        const auto start = std::get<ui::Path::MoveTo>(guides[i].path.elements[0]).to;
        const auto end = std::get<ui::Path::LineTo>(guides[i].path.elements[1]).to;
        EXPECT_NEAR(start.x, center.x, 1e-9) << name;
        EXPECT_NEAR(start.y, center.y - 8, 1e-9) << name;
        EXPECT_EQ(end.x, start.x);
        EXPECT_GT(end.y, start.y);
    }
}

bool overlap(const ui::Rect& a, const ui::Rect& b) {
    constexpr double kSlack = 1e-9;
    return a.x + kSlack < b.maxX() && b.x + kSlack < a.maxX() && a.y + kSlack < b.maxY() &&
           b.y + kSlack < a.maxY();
}

// Every day of a year, from the equator to Svalbard, in a wide and a medium-sized chart, with
// the present moon at the day's rise (where it meets the rise marker) or else at noon.
TEST(MoonElevationChart, MarkersNeitherOverlapNorLeaveThePlot) {
    struct Place {
        double latitude, longitude;
        const char* zone;
    };
    for (const auto& [lat, lng, zoneName] :
         {Place{0, 9.45, "Africa/Libreville"}, Place{45, 7.68, "Europe/Rome"},
          Place{69.6, 18.96, "Europe/Oslo"}, Place{78, 15.65, "Arctic/Longyearbyen"}}) {
        const auto place = zone(zoneName);
        for (int day = 0; day < 365; ++day) {
            const Date noon = utc(2025, 1, 1, 12).addingTimeInterval(day * 86'400.0);
            const auto rise = Solar::moonRiseSet(noon, place, Solar::Crossing::rise, {lat, lng});
            const auto set = Solar::moonRiseSet(noon, place, Solar::Crossing::set, {lat, lng});
            const auto chart = chartOf({.latitude = lat,
                                        .longitude = lng,
                                        .timezone = zoneName,
                                        .selectedTime = rise.value_or(noon),
                                        .moonrise = rise,
                                        .moonset = set});
            for (const ui::Size size : {kChart, ui::Size{110, 112}}) {
                const auto markers =
                    all<DrawSymbol>(ui::render(chart.body(), size, {kMeasurer, {}}));
                for (std::size_t i = 0; i < markers.size(); ++i) {
                    const auto& frame = markers[i].frame;
                    EXPECT_TRUE(frame.x >= 0 && frame.y >= 0 && frame.maxX() <= size.width &&
                                frame.maxY() <= size.height)
                        << zoneName << " day " << day << " " << markers[i].name;
                    for (std::size_t j = i + 1; j < markers.size(); ++j) {
                        EXPECT_FALSE(overlap(frame, markers[j].frame))
                            << zoneName << " day " << day << " " << markers[i].name << " "
                            << markers[j].name;
                    }
                }
            }
        }
    }
}

TEST(MoonElevationChart, PresentMoonIsBrightAboveTheHorizonAndDimBelow) {
    // 02:00 and 14:00 in Paris.
    const std::vector<std::tuple<Date, double, double>> cases{
        {utc(2025, 6, 10, 0), 20, 0.95},
        {utc(2025, 6, 10, 12), 140, 0.4},
    };
    for (const auto& [now, x, opacity] : cases) {
        auto record = parisDay();
        record.selectedTime = now;
        const auto list = draw(chartOf(record));
        const auto moon = symbolNamed(list, "moon.fill");
        EXPECT_NEAR(moon.frame.center().x, x, 1e-9);
        EXPECT_EQ(moon.color, Color::white().opacity(opacity));
        EXPECT_EQ(moon.frame.center().y<horizonY(list), opacity> 0.5);
    }
}

TEST(MoonElevationChart, APresentMomentOffTheChartDayIsNotMarked) {
    // The chart shows a Tromsø day when the moon stays below -5°; two weeks later it is 48° up.
    const auto list = draw(chartOf({.latitude = 69.6492,
                                    .longitude = 18.9553,
                                    .timezone = "Europe/Oslo",
                                    .selectedTime = utc(2025, 2, 8, 20),
                                    .moonset = utc(2025, 1, 26, 12)}));
    EXPECT_EQ(horizonY(list), 8);
    EXPECT_THAT(testing::symbols(list), Not(Contains("moon.fill")));
}

TEST(MoonElevationChart, LabelsTheTimesInThePlaceZoneOnlyWhenAsked) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases{
        {"Europe/Paris", "22:00", "07:30"},
        {"Mars/Olympus_Mons", "20:00", "05:30"},  // the device zone
    };
    for (const auto& [timezone, riseText, setText] : cases) {
        auto chart = chartOf({.timezone = timezone,
                              .selectedTime = utc(2025, 6, 10, 9),
                              .moonrise = utc(2025, 6, 10, 20),
                              .moonset = utc(2025, 6, 10, 5, 30)},
                             "en_GB");
        EXPECT_TRUE(all<ui::DrawText>(draw(chart)).empty());

        chart.showLabel = true;
        const auto list = draw(chart);
        const auto labels = all<ui::DrawText>(list);
        ASSERT_EQ(labels.size(), 2u);
        const std::vector<std::pair<std::string, std::string>> expected{{"moonrise.fill", riseText},
                                                                        {"moonset.fill", setText}};
        for (std::size_t i = 0; i < labels.size(); ++i) {
            EXPECT_EQ(labels[i].text, expected[i].second);
            const double markerY = symbolNamed(list, expected[i].first).frame.center().y;
            EXPECT_NEAR(labels[i].frame.center().y, markerY - 26, 1e-9);
        }
    }
}

TEST(MoonElevationChart, UnknownZoneScalesToEveryAltitude) {
    auto record = parisDay();
    record.timezone = "Mars/Olympus_Mons";
    EXPECT_EQ(horizonY(draw(chartOf(record))), kChart.height / 2);
}

TEST(MoonElevationChart, PlaceholderDrawsItsMadeUpDay) {
    // The made-up altitude peaks at 50° at 08:00 UTC, on a -25° to 55° scale; its moon stands
    // at the placeholder's 35° on the way down, whatever the present moment.
    const auto chart = chartOf({.latitude = kParisLat,
                                .longitude = kParisLng,
                                .timezone = "UTC",
                                .isPlaceholder = true,
                                .selectedTime = utc(2025, 6, 10, 8)});
    const auto moon = symbolNamed(draw(chart), "moon.fill").frame.center();
    EXPECT_NEAR(moon.x, 240 * (14 - 12 / std::numbers::pi * std::asin(20.0 / 35)) / 24, 1e-9);
    EXPECT_NEAR(moon.y, 100 - 84 * 60.0 / 80 - 8, 1e-9);
}

TEST(MoonElevationChart, NoonTickSitsAtLocalNoonEvenOnAShortDay) {
    // 30 March 2025 in Paris lasts 23 hours; noon comes 11 hours after midnight.
    auto chart = chartOf({.latitude = kParisLat,
                          .longitude = kParisLng,
                          .timezone = "Europe/Paris",
                          .selectedTime = utc(2025, 3, 30, 9)});
    chart.showNoon = true;
    const auto verticals = [&] {
        std::vector<double> found;
        for (const auto& [from, to] : straightLines(draw(chart), false)) {
            if (from.x == to.x) found.push_back(from.x);
        }
        return found;
    };
    ASSERT_EQ(verticals().size(), 1u);
    EXPECT_NEAR(verticals().front(), kChart.width * 11 / 24, 1e-9);
    chart.showNoon = false;
    EXPECT_TRUE(verticals().empty());
}

TEST(MoonElevationChart, ThePresentMoonIsOptionalAndTintedModesDropTheMarkerHues) {
    auto chart = parisChart();
    chart.showCurrentPosition = false;
    chart.widgetRenderingMode = ui::RenderingMode::accented;
    const auto list = draw(chart);
    EXPECT_THAT(testing::symbols(list), Not(Contains("moon.fill")));
    EXPECT_EQ(symbolNamed(list, "moonrise.fill").color, Color::white());
    EXPECT_EQ(symbolNamed(list, "moonset.fill").color, Color::white());
}

}  // namespace
}  // namespace lunoval
