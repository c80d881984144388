#pragma once

#include <cairo.h>

#include "app/lunoval_widget_bundle.hpp"
#include "app/widget_renderer.hpp"
#include "timeline/moon_widget_data.hpp"
#include "ui/text_measurer.hpp"

namespace lunoval::desktop {

// One widget on the desktop: which kind, at which size.
struct DesktopWidget {
    WidgetKind widget;
    widgetkit::WidgetFamily family;
};

// The widget laid out for `entry` at `scale` device pixels per point, as `lunoval render`
// lays it out.
RenderedWidget layOutWidget(const DesktopWidget& widget, const MoonWidgetEntry& entry, double scale,
                            const ui::TextMeasurer& measurer);

// Paints a laid-out widget on `cairo`, whose user space is in points, within the phone's rounded
// corners on the home screen; lock-screen widgets stand on what is below them.
void paintWidget(cairo_t* cairo, const DesktopWidget& widget, const RenderedWidget& rendered);

}  // namespace lunoval::desktop
