#include <benchmark/benchmark.h>
#include <cairo.h>
#include <malloc.h>

#include <algorithm>

#include "app/widget_renderer.hpp"
#include "paris_widgets.hpp"
#include "timeline/elevation_day.hpp"
#include "timeline/widget_data_builder.hpp"
#include "ui/painter.hpp"
#include "ui/pango_text_measurer.hpp"
#include "views/moon_elevation_chart.hpp"
#include "views/simple_moon_phase_view.hpp"

namespace {

using namespace lunoval;

// As the command does: freed drawing surfaces stay in the heap instead of being unmapped.
const bool kHeapKeepsSurfaces = [] {
    return mallopt(M_MMAP_THRESHOLD, 64 << 20) == 1 && mallopt(M_TRIM_THRESHOLD, 128 << 20) == 1;
}();

// Lays the view out and paints it on a transparent surface at scale 3, as a render does
// before the image is encoded.
void layOutAndPaint(benchmark::State& state, const ui::View& view, ui::Size size) {
    const ui::Environment environment{.displayScale = 3};
    const ui::PangoTextMeasurer measurer;
    for (auto _ : state) {
        const auto list = ui::render(view, size, {measurer, environment});
        auto* surface =
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(size.width * 3),
                                       static_cast<int>(size.height * 3));
        auto* cairo = cairo_create(surface);
        cairo_scale(cairo, 3, 3);
        ui::paint(list, cairo, environment);
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
}

void moonDisc(benchmark::State& state) {
    const SimpleMoonPhaseView disc{.moonPhase = {.illumination = 0.3,
                                                 .phaseType = Solar::PhaseType::waxingCrescent,
                                                 .tiltAngle = 25},
                                   .size = 56,
                                   .strokeColor = ui::Color::white(),
                                   .fillColor = ui::Color::white(),
                                   .phaseBackgroundColor = ui::Color::clear(),
                                   .applyRotation = true,
                                   .strokeWidth = 1.5};
    layOutAndPaint(state, disc.body(), {56, 56});
}
BENCHMARK(moonDisc)->Repetitions(9)->ReportAggregatesOnly(true);

void elevationChart(benchmark::State& state) {
    const auto now = Date::fromTimeIntervalSince1970(1760000000);
    const MoonWidgetData record{.latitude = 48.8566,
                                .longitude = 2.3522,
                                .timezone = "Europe/Paris",
                                .selectedTime = now,
                                .moonrise = now.addingTimeInterval(-5 * 3600),
                                .moonset = now.addingTimeInterval(7 * 3600)};
    const auto paris = *TimeZone::named("Europe/Paris");
    const MoonElevationChart chart{.day = elevationDay(record, paris),
                                   .format = {.locale = "en_US", .zone = paris},
                                   .showLabel = true};
    layOutAndPaint(state, chart.body(), {200, 100});
}
BENCHMARK(elevationChart)->Repetitions(9)->ReportAggregatesOnly(true);

// The first widget of the bundle that offers the family, showing a filled Paris record; laid
// out, painted and encoded as PNG at scale 3, as `render` does once the provider has answered.
void widgetFamily(benchmark::State& state, widgetkit::WidgetFamily family) {
    const auto context = bench::parisContext();
    const auto entry = bench::parisEntry(context);
    const auto widget = bench::widgetOffering(family);
    const ui::PangoTextMeasurer measurer;
    for (auto _ : state) {
        // The details as the host works them out for each entry it draws.
        const auto rendered =
            renderWidget(widget, family, withDetails(entry, context), {}, measurer);
        benchmark::DoNotOptimize(
            ui::encodeImage(rendered.list, rendered.environment, ui::ImageFormat::png));
    }
}
const bool kFamiliesRegistered = bench::registerPerFamily("widgetFamily", widgetFamily);

}  // namespace
