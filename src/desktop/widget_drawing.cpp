#include "desktop/widget_drawing.hpp"

#include <array>
#include <numbers>

#include "ui/painter.hpp"

namespace lunoval::desktop {

namespace {

// The phone's corner radius for home-screen widgets, in points.
constexpr double kCornerRadius = 22;

// What lies outside the rounded corners: four small pieces, so that erasing them touches no
// more pixels than the corners hold.
void cornerPieces(cairo_t* cairo, double width, double height, double radius) {
    using std::numbers::pi;
    struct Corner {
        double x, y, angle;  // the corner, and where its arc starts
    };
    const std::array<Corner, 4> corners{
        {{0, 0, pi}, {width, 0, -pi / 2}, {width, height, 0}, {0, height, pi / 2}}};
    for (const auto& corner : corners) {
        const double cx = corner.x == 0 ? radius : width - radius;
        const double cy = corner.y == 0 ? radius : height - radius;
        cairo_move_to(cairo, corner.x, corner.y);
        cairo_arc(cairo, cx, cy, radius, corner.angle, corner.angle + pi / 2);
        cairo_close_path(cairo);
    }
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
    cornerPieces(cairo, size.width, size.height, kCornerRadius);
    cairo_set_operator(cairo, CAIRO_OPERATOR_DEST_OUT);
    cairo_fill(cairo);
    cairo_restore(cairo);
}

}  // namespace lunoval::desktop
