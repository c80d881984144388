#include "views/moon_elevation_chart.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

#include "astro/moon_position.hpp"
#include "astro/test_dates.hpp"
#include "display_list_queries.hpp"
#include "fake_text_measurer.hpp"
#include "timeline/elevation_day.hpp"

namespace lunoval {
namespace {

using testing::all;
using testing::utc;
using ui::DrawSymbol;

constexpr ui::Size kChart{240, 100};

// The day around `noon` at a place, with the engine's rise and set, seen at `now`.
MoonWidgetData placeDay(double lat, double lng, const char* zone, Date noon, Date now) {
    MoonWidgetData data{.latitude = lat, .longitude = lng, .timezone = zone, .selectedTime = now};
    const auto place = testing::zone(zone);
    data.moonrise = Solar::moonRiseSet(noon, place, Solar::Crossing::rise, {lat, lng});
    data.moonset = Solar::moonRiseSet(noon, place, Solar::Crossing::set, {lat, lng});
    return data;
}

// 10 June 2025 in Paris, which begins at 22:00 UTC the day before: the moon sets in the morning
// and rises in the evening.
MoonWidgetData parisDay(Date now = utc(2025, 6, 10, 12)) {
    return placeDay(48.8566, 2.3522, "Europe/Paris", utc(2025, 6, 10, 10), now);
}

// The chart of a record's day with the options of `chart`, by default the medium widget's; a
// record whose zone is unknown is drawn in the device's, UTC here.
ui::DisplayList draw(const MoonWidgetData& record, ui::Size size = kChart,
                     MoonElevationChart chart = {}) {
    static const testing::FakeTextMeasurer measurer;
    const auto zone = TimeZone::named(record.timezone).value_or(TimeZone::utc());
    chart.day = elevationDay(record, zone);
    chart.format = {.zone = zone};
    return ui::render(chart.body(), size, {measurer, {}});
}

// The height of the line drawn straight across the whole chart.
double horizonY(const ui::DisplayList& list) {
    for (const auto& stroke : all<ui::StrokePath>(list)) {
        const auto& path = stroke.path.elements;
        const auto* from = path.empty() ? nullptr : std::get_if<ui::Path::MoveTo>(&path[0]);
        if (from && stroke.path == ui::Path::line({0, from->to.y}, {kChart.width, from->to.y})) {
            return from->to.y;
        }
    }
    return -1;
}

TEST(MoonElevationChart, MarksRiseAndSetOnTheHorizon) {
    const auto record = parisDay();
    ASSERT_TRUE(record.moonrise && record.moonset);
    const auto list = draw(record);
    const double dayStart = utc(2025, 6, 9, 22).timeIntervalSince1970();
    for (const auto& [i, name, instant] :
         {std::tuple{0, "moonrise.fill", *record.moonrise}, {1, "moonset.fill", *record.moonset}}) {
        const auto marker = all<DrawSymbol>(list).at(i);
        const auto center = marker.frame.center();
        EXPECT_EQ(marker.name, name);
        EXPECT_NEAR(center.x, 240 * (instant.timeIntervalSince1970() - dayStart) / 86'400, 1e-9);
        // The engine's rise and set are where its altitude crosses the horizon.
        EXPECT_NEAR(center.y, horizonY(list), 1.0) << name;
    }
}

// Every day of a year, from the equator to Svalbard, in a wide and a medium-sized chart, with
// the present moon at the day's rise (where it meets the rise marker) or else at noon.
TEST(MoonElevationChart, MarkersNeitherOverlapNorLeaveThePlot) {
    const auto overlap = [](const ui::Rect& a, const ui::Rect& b) {
        constexpr double kSlack = 1e-9;
        return a.x + kSlack < b.maxX() && b.x + kSlack < a.maxX() && a.y + kSlack < b.maxY() &&
               b.y + kSlack < a.maxY();
    };
    for (const auto& [lat, lng, zone] : {std::tuple{0.0, 9.45, "Africa/Libreville"},
                                         {45.0, 7.68, "Europe/Rome"},
                                         {69.6, 18.96, "Europe/Oslo"},
                                         {78.0, 15.65, "Arctic/Longyearbyen"}}) {
        for (int day = 0; day < 365; ++day) {
            const Date noon = utc(2025, 1, 1, 12).addingTimeInterval(day * 86'400.0);
            auto record = placeDay(lat, lng, zone, noon, noon);
            record.selectedTime = record.moonrise.value_or(noon);
            for (const ui::Size size : {kChart, ui::Size{110, 112}}) {
                const auto markers = all<DrawSymbol>(draw(record, size));
                for (std::size_t i = 0; i < markers.size(); ++i) {
                    const auto& frame = markers[i].frame;
                    SCOPED_TRACE(::testing::Message()
                                 << zone << " day " << day << " " << markers[i].name);
                    EXPECT_TRUE(frame.x >= 0 && frame.y >= 0 && frame.maxX() <= size.width &&
                                frame.maxY() <= size.height);
                    for (std::size_t j = i + 1; j < markers.size(); ++j) {
                        EXPECT_FALSE(overlap(frame, markers[j].frame)) << markers[j].name;
                    }
                }
            }
        }
    }
}

// The horizon divides a scale of the day's altitudes widened by 5°: an unknown zone's day spans
// every altitude; a Tromsø day whose moon stays below -5° puts it at the top, 8 points down.
// The present moon is bright above the horizon, dim below, and absent off the chart day.
TEST(MoonElevationChart, ScaleEdgesAndThePresentMoon) {
    auto unknownZone = parisDay();
    unknownZone.timezone = "Mars/Olympus_Mons";
    const MoonWidgetData polarNight{.latitude = 69.6492,
                                    .longitude = 18.9553,
                                    .timezone = "Europe/Oslo",
                                    .selectedTime = utc(2025, 2, 8, 20),
                                    .moonset = utc(2025, 1, 26, 12)};
    // The horizon where it is checked, and the moon's x and opacity where it is drawn.
    for (const auto& [record, horizon, moonX, opacity] :
         {std::tuple{parisDay(utc(2025, 6, 10, 0)), -1.0, 20.0, 0.95},
          {parisDay(), -1.0, 140.0, 0.4},
          {unknownZone, 50.0, 120.0, 0.4},
          {polarNight, 8.0, 0.0, 0.0}}) {
        const auto list = draw(record);
        const auto symbols = all<DrawSymbol>(list);
        const auto moon = std::ranges::find(symbols, "moon.fill", &DrawSymbol::name);
        EXPECT_EQ(horizon < 0 ? -1 : horizonY(list), horizon);
        ASSERT_EQ(moon != symbols.end(), opacity > 0);
        if (opacity == 0) continue;
        EXPECT_NEAR(moon->frame.center().x, moonX, 1e-9);
        EXPECT_EQ(moon->color, ui::Color::white().opacity(opacity));
        EXPECT_EQ((moon->frame.center().y < horizonY(list)), (opacity > 0.5));
    }
}

// Labels give the times in the place's zone over capsules of their markers' hues, kept inside
// the chart; the noon tick crosses the horizon at noon, 11 hours into a day the clocks go forward;
// tinted modes drop the markers' hues; the present moon can be left out.
TEST(MoonElevationChart, OptionsTheMediumWidgetLeavesOff) {
    // Paris on 30 March 2025; the moon rises at 23:50.
    MoonWidgetData record{.timezone = "Europe/Paris", .selectedTime = utc(2025, 3, 30, 9)};
    record.moonrise = utc(2025, 3, 30, 21, 50);
    record.moonset = utc(2025, 3, 30, 5, 30);
    const std::pair<MoonElevationChart, std::vector<std::string>> cases[] = {
        {{.showLabel = true, .showNoon = true}, {"11:50\u202fPM", "7:30\u202fAM"}},
        {{.showCurrentPosition = false, .widgetRenderingMode = ui::RenderingMode::accented}, {}}};
    for (const auto& [options, labels] : cases) {
        const auto list = draw(record, kChart, options);
        const auto symbols = all<DrawSymbol>(list);
        const auto texts = all<ui::DrawText>(list);
        ASSERT_EQ(symbols.size(), options.showCurrentPosition ? 3u : 2u);
        const bool tinted = options.widgetRenderingMode != ui::RenderingMode::fullColor;
        EXPECT_EQ(symbols[0].color == symbols[1].color, tinted);
        EXPECT_EQ(testing::texts(list), labels);
        const auto fills = all<ui::FillPath>(list);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const ui::Paint capsule = symbols[i].color.opacity(0.22);
            EXPECT_EQ(std::ranges::count(fills, capsule, &ui::FillPath::paint), 1);
            EXPECT_NEAR(texts[i].frame.center().y, symbols[i].frame.center().y - 26, 1e-9);
            EXPECT_TRUE(texts[i].frame.x >= 0 && texts[i].frame.maxX() <= kChart.width);
        }
        const double h = horizonY(list);
        const auto tick = ui::Path::line({110, h - 4}, {110, h + 4});
        EXPECT_EQ(std::ranges::count(all<ui::StrokePath>(list), tick, &ui::StrokePath::path),
                  options.showNoon ? 1 : 0);
    }
}

}  // namespace
}  // namespace lunoval
