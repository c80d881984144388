#include <algorithm>
#include <cmath>
#include <numbers>

#include "ui/symbol_drawings.hpp"

namespace lunoval::ui::symbol_drawings {

namespace {

constexpr double kPi = std::numbers::pi;

Point onCircle(Point center, double radius, double angle) {
    return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

// One cubic for a turn of at most a quarter, the usual 4/3·tan(θ/4) handle length.
void addArcPiece(Path& path, Point center, double radius, double from, double to) {
    const double handle = 4.0 / 3.0 * std::tan((to - from) / 4) * radius;
    const Point start = onCircle(center, radius, from);
    const Point end = onCircle(center, radius, to);
    path.curveTo({start.x - handle * std::sin(from), start.y + handle * std::cos(from)},
                 {end.x + handle * std::sin(to), end.y - handle * std::cos(to)}, end);
}

}  // namespace

Units::Units(const GraphicsContext& context, double lineWidth)
    : scale(context.size().height),
      width(context.size().width / scale),
      line(lineWidth / scale),
      halfLine(line / 2) {}

void addArc(Path& path, Point center, double radius, double from, double to) {
    const int pieces =
        std::max(1, static_cast<int>(std::ceil(std::fabs(to - from) / (kPi / 2) - 1e-9)));
    const double step = (to - from) / pieces;
    for (int i = 0; i < pieces; ++i) {
        addArcPiece(path, center, radius, from + i * step, from + (i + 1) * step);
    }
}

Path crescent(Point center, double radius, double inset) {
    // The dark part is a slightly smaller disc pushed towards the upper right. Shrinking the
    // lit disc and growing the dark one by the same length gives the crescent's inner edge.
    const double litRadius = radius - inset;
    const double darkRadius = 0.84 * radius + inset;
    const double offset = 0.62 * radius;
    const double toward = -kPi / 4;
    const Point darkCenter = onCircle(center, offset, toward);
    // Where the two circles cross, seen from each centre.
    const double along =
        (litRadius * litRadius - darkRadius * darkRadius + offset * offset) / (2 * offset);
    const double across = std::sqrt(litRadius * litRadius - along * along);
    const double lit = std::atan2(across, along);
    const double dark = std::atan2(across, along - offset);

    Path path;
    path.moveTo(onCircle(center, litRadius, toward + lit));
    addArc(path, center, litRadius, toward + lit, toward + 2 * kPi - lit);
    addArc(path, darkCenter, darkRadius, toward + 2 * kPi - dark, toward + dark);
    return path.close();
}

Path upperHalfDisc(Point center, double radius) {
    Path path;
    path.moveTo({center.x - radius, center.y});
    addArc(path, center, radius, kPi, 2 * kPi);
    return path.close();
}

Path roundedLine(Point from, Point to, double width) {
    const double radius = width / 2;
    const double heading = std::atan2(to.y - from.y, to.x - from.x);
    // Round the far end, then the near one, always turning the same way.
    Path path;
    path.moveTo(onCircle(from, radius, heading - kPi / 2));
    path.lineTo(onCircle(to, radius, heading - kPi / 2));
    addArc(path, to, radius, heading - kPi / 2, heading + kPi / 2);
    path.lineTo(onCircle(from, radius, heading + kPi / 2));
    addArc(path, from, radius, heading + kPi / 2, heading + 3 * kPi / 2);
    return path.close();
}

Path arrow(Point tail, Point tip, double head, double width) {
    const double heading = std::atan2(tail.y - tip.y, tail.x - tip.x);
    Path path = roundedLine(tail, tip, width);
    for (const double side : {-kPi / 4, kPi / 4}) {
        path.addPath(roundedLine(tip, onCircle(tip, head, heading + side), width));
    }
    return path;
}

Path horizon(const Units& units) {
    const double y = 1 - units.halfLine;
    return roundedLine(units.at(units.halfLine, y), units.at(units.width - units.halfLine, y),
                       units.points(units.line));
}

}  // namespace lunoval::ui::symbol_drawings
