#pragma once

// The pieces our symbol drawings share, and the drawings the symbol table names.

#include "ui/graphics_context.hpp"

namespace lunoval::ui::symbol_drawings {

// A drawing's own units: its height is 1 and its width is its aspect ratio.
struct Units {
    Units(const GraphicsContext& context, double lineWidth);

    double scale;  // points per unit
    double width;
    double line;  // the line width
    double halfLine;

    [[nodiscard]] Point at(double x, double y) const { return {x * scale, y * scale}; }
    [[nodiscard]] double points(double length) const { return length * scale; }
};

// Appends a circle arc as cubic curves, turning either way, from the path's current point,
// which must be the arc's start.
void addArc(Path& path, Point center, double radius, double from, double to);
// The lit part of a crescent moon in the circle at `center`, its horns towards the upper right;
// with an `inset`, the part at least that far inside it.
Path crescent(Point center, double radius, double inset = 0);
// A half disc resting on the line through `center`.
Path upperHalfDisc(Point center, double radius);
// A line `width` wide with round ends, as a shape to fill. Lines gathered in one path and
// filled by the non-zero rule meet in round joins.
Path roundedLine(Point from, Point to, double width);
// A line from `tail` to `tip` with an open head whose arms are `head` long, as a shape to fill.
Path arrow(Point tail, Point tip, double head, double width);
// The ground line across the bottom of the drawing, as a shape to fill.
Path horizon(const Units& units);

enum class Heading { up, down };

void drawMoon(GraphicsContext& context, Color color, double lineWidth);
void drawMoonFill(GraphicsContext& context, Color color, double lineWidth);
template <Heading heading>
void drawMoonPassage(GraphicsContext& context, Color color, double lineWidth);

template <Heading heading>
void drawSunPassage(GraphicsContext& context, Color color, double lineWidth);
void drawSunAndHorizon(GraphicsContext& context, Color color, double lineWidth);

void drawLocationSlash(GraphicsContext& context, Color color, double lineWidth);
void drawLocationSlashFill(GraphicsContext& context, Color color, double lineWidth);

// Which part of a phase disc is lit; the rest is the disc's outline.
enum class Lit { none, left, right, whole };
template <Lit lit>
void drawPhase(GraphicsContext& context, Color color, double lineWidth);

}  // namespace lunoval::ui::symbol_drawings
