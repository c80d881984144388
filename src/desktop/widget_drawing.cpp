#include "desktop/widget_drawing.hpp"

#include <numbers>

#include "ui/painter.hpp"

namespace lunoval::desktop {

namespace {

// The phone's corner radius for home-screen widgets, in points.
constexpr double kCornerRadius = 22;

void roundedRectangle(cairo_t* cairo, double width, double height, double radius) {
    using std::numbers::pi;
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, width - radius, radius, radius, -pi / 2, 0);
    cairo_arc(cairo, width - radius, height - radius, radius, 0, pi / 2);
    cairo_arc(cairo, radius, height - radius, radius, pi / 2, pi);
    cairo_arc(cairo, radius, radius, radius, pi, 3 * pi / 2);
    cairo_close_path(cairo);
}

}  // namespace

RenderedWidget layOutWidget(const DesktopWidget& widget, const MoonWidgetEntry& entry, double scale,
                            const ui::TextMeasurer& measurer) {
    return renderWidget(widget.widget, widget.family, entry, {.scale = scale}, measurer);
}

// The corners are erased after painting rather than clipped before: a clip would change how
// the gradients' pixels round, and the widget would no longer be its rendered image.
void paintWidget(cairo_t* cairo, const DesktopWidget& widget, const RenderedWidget& rendered) {
    ui::paint(rendered.list, cairo, rendered.environment);
    if (widgetkit::isAccessory(widget.family)) return;
    const auto size = widgetkit::familySize(widget.family);
    cairo_save(cairo);
    cairo_rectangle(cairo, 0, 0, size.width, size.height);
    roundedRectangle(cairo, size.width, size.height, kCornerRadius);
    cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_set_operator(cairo, CAIRO_OPERATOR_DEST_OUT);
    cairo_fill(cairo);
    cairo_restore(cairo);
}

}  // namespace lunoval::desktop
