#pragma once

#include <variant>
#include <vector>

#include "ui/geometry.hpp"

namespace lunoval::ui {

// A path as a list of sub-path pieces. Ellipses and rectangles stay whole so that a painter can
// draw them exactly and a test can read them back.
struct Path {
    struct MoveTo {
        Point to;
        friend bool operator==(const MoveTo&, const MoveTo&) = default;
    };
    struct LineTo {
        Point to;
        friend bool operator==(const LineTo&, const LineTo&) = default;
    };
    struct CurveTo {
        Point control1, control2, to;
        friend bool operator==(const CurveTo&, const CurveTo&) = default;
    };
    // An arc of a circle from `startAngle` to `endAngle` (radians, clockwise on a y-down canvas),
    // joined to the current point by a line.
    struct Arc {
        Point center;
        double radius = 0;
        double startAngle = 0;
        double endAngle = 0;
        friend bool operator==(const Arc&, const Arc&) = default;
    };
    struct Close {
        friend bool operator==(const Close&, const Close&) = default;
    };
    // Closed sub-paths; a rectangle of negative extent is taken by its absolute extent.
    struct Ellipse {
        Rect in;
        friend bool operator==(const Ellipse&, const Ellipse&) = default;
    };
    struct Rectangle {
        Rect rect;
        friend bool operator==(const Rectangle&, const Rectangle&) = default;
    };
    using Element = std::variant<MoveTo, LineTo, CurveTo, Arc, Close, Ellipse, Rectangle>;

    std::vector<Element> elements;

    static Path ellipse(Rect in) { return {{Ellipse{in}}}; }
    static Path rectangle(Rect rect) { return {{Rectangle{rect}}}; }
    static Path line(Point from, Point to) { return {{MoveTo{from}, LineTo{to}}}; }

    Path& moveTo(Point p) { return add(MoveTo{p}); }
    Path& lineTo(Point p) { return add(LineTo{p}); }
    Path& curveTo(Point c1, Point c2, Point to) { return add(CurveTo{c1, c2, to}); }
    Path& arc(Point center, double radius, double start, double end) {
        return add(Arc{center, radius, start, end});
    }
    Path& close() { return add(Close{}); }
    Path& addEllipse(Rect in) { return add(Ellipse{in}); }
    Path& addRectangle(Rect rect) { return add(Rectangle{rect}); }
    // All sub-paths of `other`, kept separate, as a union under the non-zero rule.
    Path& addPath(const Path& other) {
        elements.insert(elements.end(), other.elements.begin(), other.elements.end());
        return *this;
    }

    friend bool operator==(const Path&, const Path&) = default;

  private:
    Path& add(Element element) {
        elements.push_back(element);
        return *this;
    }
};

}  // namespace lunoval::ui
