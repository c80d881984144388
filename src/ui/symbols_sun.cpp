#include <cmath>
#include <numbers>

#include "ui/symbol_drawings.hpp"

namespace lunoval::ui::symbol_drawings {

namespace {

// A half sun on the ground with rays `rayStart` to `rayEnd` from its centre. The level rays
// are lifted clear of the ground line.
struct HalfSun {
    double radius;
    double rayStart;
    double rayEnd;
    bool upright;  // with a ray straight up

    void draw(GraphicsContext& context, const Units& units, Color color) const {
        const double ground = 1 - units.halfLine;
        const double middle = units.width / 2;
        context.fill(upperHalfDisc(units.at(middle, ground), units.points(radius)), color);
        Path lines = horizon(units);
        const auto ray = [&](double dx, double dy, double y) {
            lines.addPath(roundedLine(units.at(middle + dx * rayStart, y - dy * rayStart),
                                      units.at(middle + dx * rayEnd, y - dy * rayEnd),
                                      units.points(units.line)));
        };
        // Steeper than a diagonal, to keep clear of the level rays.
        const double slope = 50 * std::numbers::pi / 180;
        for (const double side : {-1.0, 1.0}) {
            ray(side, 0, ground - 1.6 * units.line);
            ray(side * std::cos(slope), std::sin(slope), ground);
        }
        if (upright) ray(0, 1, ground);
        context.fill(lines, color);
    }
};

}  // namespace

// The half sun with an arrow above it, pointing up as it rises and down as it sets.
template <Heading heading>
void drawSunPassage(GraphicsContext& context, Color color, double lineWidth) {
    const Units units(context, lineWidth);
    HalfSun{0.28, 0.39, 0.53, false}.draw(context, units, color);
    const Point low = units.at(units.width / 2, 0.56);
    const Point high = units.at(units.width / 2, units.halfLine + 0.01);
    const double head = units.points(0.17);
    context.fill(heading == Heading::up ? arrow(low, high, head, lineWidth)
                                        : arrow(high, low, head, lineWidth),
                 color);
}

template void drawSunPassage<Heading::up>(GraphicsContext&, Color, double);
template void drawSunPassage<Heading::down>(GraphicsContext&, Color, double);

void drawSunAndHorizon(GraphicsContext& context, Color color, double lineWidth) {
    const Units units(context, lineWidth);
    HalfSun{0.46, 0.6, 0.8, true}.draw(context, units, color);
}

}  // namespace lunoval::ui::symbol_drawings
