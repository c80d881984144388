#include <numbers>

#include "ui/symbol_drawings.hpp"

namespace lunoval::ui::symbol_drawings {

namespace {

// The half of the disc facing `lit`, reaching the middle of the outline.
Path halfDisc(Point center, double radius, Lit lit) {
    constexpr double kPi = std::numbers::pi;
    const double start = lit == Lit::right ? -kPi / 2 : kPi / 2;
    Path path;
    path.moveTo({center.x, lit == Lit::right ? center.y - radius : center.y + radius});
    addArc(path, center, radius, start, start + kPi);
    return path.close();
}

}  // namespace

template <Lit lit>
void drawPhase(GraphicsContext& context, Color color, double lineWidth) {
    if constexpr (lit == Lit::whole) {
        context.fill(Path::ellipse({0, 0, context.size().width, context.size().height}), color);
    } else {
        const Units units(context, lineWidth);
        const Point center = units.at(units.width / 2, 0.5);
        const double radius = units.points(0.5 - units.halfLine);
        context.stroke(
            Path::ellipse({center.x - radius, center.y - radius, 2 * radius, 2 * radius}), color,
            StrokeStyle{.lineWidth = lineWidth});
        if constexpr (lit != Lit::none) context.fill(halfDisc(center, radius, lit), color);
    }
}

template void drawPhase<Lit::none>(GraphicsContext&, Color, double);
template void drawPhase<Lit::left>(GraphicsContext&, Color, double);
template void drawPhase<Lit::right>(GraphicsContext&, Color, double);
template void drawPhase<Lit::whole>(GraphicsContext&, Color, double);

}  // namespace lunoval::ui::symbol_drawings
