#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ui/color.hpp"
#include "ui/font.hpp"
#include "ui/geometry.hpp"
#include "ui/path.hpp"

namespace lunoval::ui {

struct GradientStop {
    Color color;
    double location = 0;  // 0 to 1
    friend bool operator==(const GradientStop&, const GradientStop&) = default;
};

// Colours spread evenly from 0 to 1, as a gradient made from a list of colours is.
std::vector<GradientStop> evenlySpaced(const std::vector<Color>& colors);

// Gradients pad beyond their ends.
struct LinearGradient {
    std::vector<GradientStop> stops;
    Point start;
    Point end;
    friend bool operator==(const LinearGradient&, const LinearGradient&) = default;
};

struct RadialGradient {
    std::vector<GradientStop> stops;
    Point center;
    double startRadius = 0;
    double endRadius = 0;
    friend bool operator==(const RadialGradient&, const RadialGradient&) = default;
};

using Paint = std::variant<Color, LinearGradient, RadialGradient>;

enum class FillRule { nonZero, evenOdd };
// `destinationOut` erases what lies below where the source is opaque.
enum class BlendMode { normal, destinationOut };

struct StrokeStyle {
    double lineWidth = 1;
    double miterLimit = 10;
    std::vector<double> dash;  // on, off, ... lengths; empty for a solid line
    friend bool operator==(const StrokeStyle&, const StrokeStyle&) = default;
};

// Everything until the matching EndGroup is drawn through this group. A group that `isLayer`
// is drawn offscreen and composited as a whole with `opacity` and `blendMode`; the clip and
// transform apply to the group's contents.
struct BeginGroup {
    Transform transform;
    std::optional<Path> clip;
    bool isLayer = false;
    double opacity = 1;
    BlendMode blendMode = BlendMode::normal;
    friend bool operator==(const BeginGroup&, const BeginGroup&) = default;
};
struct EndGroup {
    friend bool operator==(const EndGroup&, const EndGroup&) = default;
};

struct FillPath {
    Path path;
    Paint paint;
    FillRule rule = FillRule::nonZero;
    BlendMode blendMode = BlendMode::normal;
    friend bool operator==(const FillPath&, const FillPath&) = default;
};

struct StrokePath {
    Path path;
    Paint paint;
    StrokeStyle style;
    friend bool operator==(const StrokePath&, const StrokePath&) = default;
};

enum class TextAlignment { leading, center, trailing };

// Text laid out in `frame`: wrapped to its width in at most `maxLines` lines (0 for no limit),
// the last line ending in an ellipsis when it does not fit. Measuring and painting lay it out
// the same way, so the frame is exactly the text's.
struct DrawText {
    Rect frame;
    std::string text;
    Font font;
    Color color;
    TextAlignment alignment = TextAlignment::leading;
    int maxLines = 0;
    friend bool operator==(const DrawText&, const DrawText&) = default;
};

// A named symbol drawn to fill `frame`, stroked at `weight`.
struct DrawSymbol {
    Rect frame;
    std::string name;
    FontWeight weight = FontWeight::regular;
    Color color;
    friend bool operator==(const DrawSymbol&, const DrawSymbol&) = default;
};

using Command = std::variant<BeginGroup, EndGroup, FillPath, StrokePath, DrawText, DrawSymbol>;

// What a laid-out view draws, in order, in points from the top-left of its frame.
struct DisplayList {
    Size size;
    std::vector<Command> commands;
    // Where the host sends the user who taps the widget.
    std::optional<std::string> widgetURL;
};

}  // namespace lunoval::ui
