#include "ui/symbol_drawings.hpp"

namespace lunoval::ui::symbol_drawings {

// The outline lies inside the crescent, so its horns stay sharp.
void drawMoon(GraphicsContext& context, Color color, double lineWidth) {
    const Units units(context, lineWidth);
    const Point center = units.at(units.width / 2, 0.5);
    Path outline = crescent(center, units.points(0.5));
    outline.addPath(crescent(center, units.points(0.5), lineWidth));
    context.fill(outline, color, FillRule::evenOdd);
}

void drawMoonFill(GraphicsContext& context, Color color, double lineWidth) {
    const Units units(context, lineWidth);
    context.fill(crescent(units.at(units.width / 2, 0.5), units.points(0.5)), color);
}

// The moon above the ground with an arrow in the hollow of its crescent.
template <Heading heading>
void drawMoonPassage(GraphicsContext& context, Color color, double lineWidth) {
    const Units units(context, lineWidth);
    const double moonBottom = 1 - 2.5 * units.line;
    const double radius = moonBottom / 2;
    context.fill(crescent(units.at(radius, moonBottom - radius), units.points(radius)), color);

    const double head = 0.2;
    const double x = units.width - head * 0.71 - units.halfLine;
    const Point low = units.at(x, moonBottom - 0.05);
    const Point high = units.at(x, units.halfLine + 0.02);
    Path lines = horizon(units);
    lines.addPath(heading == Heading::up ? arrow(low, high, units.points(head), lineWidth)
                                         : arrow(high, low, units.points(head), lineWidth));
    context.fill(lines, color);
}

template void drawMoonPassage<Heading::up>(GraphicsContext&, Color, double);
template void drawMoonPassage<Heading::down>(GraphicsContext&, Color, double);

}  // namespace lunoval::ui::symbol_drawings
