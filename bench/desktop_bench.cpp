#include <benchmark/benchmark.h>
#include <cairo.h>

#include <algorithm>

#include "desktop/widget_drawing.hpp"
#include "timeline/entry_details.hpp"
#include "timeline/widget_data_builder.hpp"
#include "ui/pango_text_measurer.hpp"

namespace {

using namespace lunoval;

constexpr int kScale = 2;

// A redraw of the desktop's window after a new entry: the first widget of the bundle that
// offers the family, laid out and painted at scale 2 on a surface of the window's size.
void desktopRedraw(benchmark::State& state, widgetkit::WidgetFamily family) {
    const auto now = Date::fromTimeIntervalSince1970(1760000000);
    const auto paris = *TimeZone::named("Europe/Paris");
    const RequestContext context{.clock = fixedClock(now),
                                 .deviceZone = paris,
                                 .locale = "en_US",
                                 .sources = AstronomySources::shared(paris)};
    MoonWidgetData record{.latitude = 48.8566, .longitude = 2.3522, .timezone = "Europe/Paris"};
    fill(record, now, SunTimes::include, Solar::Tilt::at(now), context.sources);
    // A redraw draws an entry the host has already given its details.
    const auto entry = withDetails({.date = now, .widgetData = record}, context);
    const auto widgets = LunovalWidgetBundle::body();
    const desktop::DesktopWidget widget{
        *std::find_if(widgets.begin(), widgets.end(),
                      [family](const auto& w) { return w.supports(family); }),
        family};
    const auto size = widgetkit::familySize(family);
    auto* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(size.width) * kScale,
                                               int(size.height) * kScale);
    const ui::PangoTextMeasurer measurer;
    for (auto _ : state) {
        auto* cairo = cairo_create(surface);
        cairo_scale(cairo, kScale, kScale);
        desktop::paintWidget(cairo, widget, desktop::layOutWidget(widget, entry, kScale, measurer));
        cairo_destroy(cairo);
    }
    cairo_surface_destroy(surface);
}

const bool kRedrawsRegistered = [] {
    using enum widgetkit::WidgetFamily;
    for (const auto family : {systemSmall, systemMedium, systemLarge, accessoryCircular,
                              accessoryRectangular, accessoryInline}) {
        const auto name = "desktopRedraw/" + std::string(widgetkit::familyName(family));
        benchmark::RegisterBenchmark(name.c_str(), desktopRedraw, family)
            ->Repetitions(9)
            ->ReportAggregatesOnly(true);
    }
    return true;
}();

}  // namespace
