#include <benchmark/benchmark.h>
#include <cairo.h>

#include "desktop/widget_drawing.hpp"
#include "paris_widgets.hpp"
#include "ui/pango_text_measurer.hpp"

namespace {

using namespace lunoval;

constexpr int kScale = 2;

// A redraw of the desktop's window after a new entry: the first widget of the bundle that
// offers the family, laid out and painted at scale 2 on a surface of the window's size.
void desktopRedraw(benchmark::State& state, widgetkit::WidgetFamily family) {
    const auto context = bench::parisContext();
    // A redraw draws an entry the host has already given its details.
    const auto entry = withDetails(bench::parisEntry(context), context);
    const desktop::DesktopWidget widget{bench::widgetOffering(family), family};
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

const bool kRedrawsRegistered = bench::registerPerFamily("desktopRedraw", desktopRedraw);

}  // namespace
