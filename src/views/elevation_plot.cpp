#include "views/elevation_plot.hpp"

#include <array>

namespace lunoval {

namespace {

using ui::Color;
using ui::Path;
using ui::Point;
using ui::StrokeStyle;

constexpr std::array<double, 3> kGuideFractions{0.25, 0.5, 0.75};
constexpr double kGuideLift = 8;

Color whiteAt(double opacity) {
    return Color::white().opacity(opacity);
}

Path polyline(const std::vector<Point>& points) {
    Path path;
    for (const auto& point : points) {
        path.elements.empty() ? path.moveTo(point) : path.lineTo(point);
    }
    return path;
}

}  // namespace

ChartPalette ChartPalette::make(ui::ColorScheme scheme, ui::RenderingMode mode) {
    // Tinted modes keep only luminance, so hues would turn into arbitrary greys.
    if (mode != ui::RenderingMode::fullColor) {
        return {Color::white(), Color::white(), Color::white(), Color::white(), Color::white()};
    }
    const Color cyan = ui::systemColor(ui::SystemColor::cyan, scheme);
    return {cyan, ui::systemColor(ui::SystemColor::purple, scheme), cyan, cyan,
            ui::systemColor(ui::SystemColor::yellow, scheme)};
}

void ElevationPlot::paint(ui::GraphicsContext& context) const {
    const auto size = scale.size();
    context.clip(Path::rectangle({0, 0, size.width, size.height}));
    paintBackdrop(context);
    paintCurve(context);
    paintMarkerGuides(context);
    if (noonX) paintNoon(context, *noonX);
    if (present) paintGlow(context, *present);
}

void ElevationPlot::paintBackdrop(ui::GraphicsContext& context) const {
    const auto size = scale.size();
    const StrokeStyle hairline{.lineWidth = 1.0, .miterLimit = 10};
    Path guides;
    for (const double fraction : kGuideFractions) {
        const double y = guideY(fraction, size.height);
        guides.addPath(Path::line({0, y}, {size.width, y}));
    }
    context.stroke(guides, whiteAt(0.04), hairline);
    const ui::LinearGradient sheen{
        ui::evenlySpaced({whiteAt(0.1), whiteAt(0.25), whiteAt(0.1)}), {0, 0}, {size.width, 0}};
    context.stroke(guides, sheen, hairline);
}

void ElevationPlot::paintCurve(ui::GraphicsContext& context) const {
    if (curve.empty()) return;
    const double width = scale.size().width;
    const double horizon = scale.horizonY();
    const Path line = polyline(curve);
    Path area = line;
    area.lineTo({curve.back().x, horizon}).lineTo({curve.front().x, horizon}).close();

    // Below the horizon the moon is out of sight, so that part of the curve stays faint.
    context.stroke(line, whiteAt(0.3), {.lineWidth = 1.5});
    context.drawLayer([&](ui::GraphicsContext& above) {
        above.clip(Path::rectangle({0, 0, width, horizon}));
        const ui::LinearGradient fade{
            {{palette.curve.opacity(0.35), 0}, {palette.curve.opacity(0.02), 1}},
            {0, kPlotInset},
            {0, horizon}};
        above.fill(area, fade);
        above.stroke(line, palette.curve.opacity(0.95), {.lineWidth = 2});
    });
    context.stroke(Path::line({0, horizon}, {width, horizon}), whiteAt(0.6), {.lineWidth = 1.25});
}

void ElevationPlot::paintMarkerGuides(ui::GraphicsContext& context) const {
    const double bottom = scale.size().height - kPlotInset;
    const StrokeStyle dashed{.lineWidth = 1.5, .miterLimit = 10, .dash = {3, 3}};
    for (const auto& marker : markers) {
        const Point top{marker.point.x, marker.point.y - kGuideLift};
        context.stroke(Path::line(top, {top.x, bottom}), marker.color.opacity(0.6), dashed);
    }
}

void ElevationPlot::paintNoon(ui::GraphicsContext& context, double x) const {
    const double horizon = scale.horizonY();
    context.stroke(Path::line({x, horizon - 4}, {x, horizon + 4}), palette.noon.opacity(0.8),
                   {.lineWidth = 1.5});
}

void ElevationPlot::paintGlow(ui::GraphicsContext& context, const PresentPosition& position) const {
    constexpr double r = PresentPosition::kGlowRadius;
    const Point c = position.point;
    const double strength = position.aboveHorizon ? 0.8 : 0.3;
    const ui::RadialGradient glow{
        {{palette.glow.opacity(strength), 0}, {palette.glow.opacity(0), 1}}, c, 0, r};
    context.fill(Path::ellipse({c.x - r, c.y - r, 2 * r, 2 * r}), glow);
}

}  // namespace lunoval
