#include <array>
#include <numbers>

#include "ui/symbol_drawings.hpp"

namespace lunoval::ui::symbol_drawings {

namespace {

// The pointer aims at the upper right; the slash crosses it from the upper left, a little ahead
// of the drawing's centre so that both pieces of the pointer stay whole.
constexpr double kDiagonal = std::numbers::sqrt2 / 2;
constexpr double kSlashAhead = 0.1;
constexpr double kSlashReach = 0.44;

// A point `forward` along the pointer's axis and `across` it from the drawing's centre.
Point onAxes(const Units& units, double forward, double across) {
    return units.at(0.5 + (forward + across) * kDiagonal, 0.5 + (across - forward) * kDiagonal);
}

// Tip, wing, notch, wing. The tip and the wings reach equally far, to centre its box.
std::array<Point, 4> pointerCorners(const Units& units) {
    const double reach = (0.5 - units.halfLine - 0.02) / kDiagonal;
    const double wingBack = 0.4 * reach;
    const double wingOut = reach - wingBack;
    return {onAxes(units, reach, 0), onAxes(units, -wingBack, wingOut),
            onAxes(units, -0.15 * reach, 0), onAxes(units, -wingBack, -wingOut)};
}

Path pointerOutline(const Units& units) {
    const auto corners = pointerCorners(units);
    Path path;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        path.addPath(
            roundedLine(corners[i], corners[(i + 1) % corners.size()], units.points(units.line)));
    }
    return path;
}

Path pointerShape(const Units& units) {
    const auto corners = pointerCorners(units);
    Path path;
    path.moveTo(corners[0]);
    for (std::size_t i = 1; i < corners.size(); ++i) path.lineTo(corners[i]);
    return path.close();
}

// The pointer with a gap cut around the slash, so the slash reads apart from it.
void drawSlashed(GraphicsContext& context, Color color, const Units& units, const Path& shape) {
    context.drawLayer([&](GraphicsContext& layer) {
        layer.fill(shape, color);
        const double ahead = kSlashAhead + units.line;
        const double behind = kSlashAhead - units.line;
        Path gap;
        gap.moveTo(onAxes(units, ahead, kSlashReach));
        gap.lineTo(onAxes(units, ahead, -kSlashReach));
        gap.lineTo(onAxes(units, behind, -kSlashReach));
        gap.lineTo(onAxes(units, behind, kSlashReach));
        layer.setBlendMode(BlendMode::destinationOut);
        layer.fill(gap.close(), Color::black());
    });
    context.fill(roundedLine(onAxes(units, kSlashAhead, -kSlashReach),
                             onAxes(units, kSlashAhead, kSlashReach), units.points(units.line)),
                 color);
}

}  // namespace

void drawLocationSlash(GraphicsContext& context, Color color, double lineWidth) {
    const Units units(context, lineWidth);
    drawSlashed(context, color, units, pointerOutline(units));
}

void drawLocationSlashFill(GraphicsContext& context, Color color, double lineWidth) {
    const Units units(context, lineWidth);
    drawSlashed(context, color, units, pointerShape(units));
}

}  // namespace lunoval::ui::symbol_drawings
