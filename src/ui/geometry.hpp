#pragma once

#include <cmath>

namespace lunoval::ui {

// Lengths are in points; a display scale turns them into device pixels only when painting.
struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double maxX() const { return x + width; }
    [[nodiscard]] double maxY() const { return y + height; }
    [[nodiscard]] Point center() const { return {x + width / 2, y + height / 2}; }
    [[nodiscard]] Size size() const { return {width, height}; }
    // The same rectangle with a non-negative width and height, as a path takes it.
    [[nodiscard]] Rect standardized() const {
        return {std::fmin(x, x + width), std::fmin(y, y + height), std::fabs(width),
                std::fabs(height)};
    }
    friend bool operator==(const Rect&, const Rect&) = default;
};

// An affine map x' = a·x + c·y + tx, y' = b·x + d·y + ty.
struct Transform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    static Transform translation(double dx, double dy) { return {1, 0, 0, 1, dx, dy}; }
    // A turn by `radians` (clockwise on a y-down canvas) about `pivot`.
    static Transform rotation(double radians, Point pivot);
    // This map applied after `first`.
    [[nodiscard]] Transform after(const Transform& first) const;
    [[nodiscard]] Point apply(Point p) const {
        return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty};
    }
    [[nodiscard]] bool isIdentity() const { return *this == Transform{}; }
    friend bool operator==(const Transform&, const Transform&) = default;
};

// SwiftUI's alignment points: where within a larger box a smaller one sits.
enum class HorizontalAlignment { leading, center, trailing };
enum class VerticalAlignment { top, center, bottom };
struct Alignment {
    HorizontalAlignment horizontal = HorizontalAlignment::center;
    VerticalAlignment vertical = VerticalAlignment::center;

    static const Alignment center;
    static const Alignment leading;
    static const Alignment top;
    static const Alignment topLeading;
    // The origin of a box of `inner` size aligned in `outer`.
    [[nodiscard]] Point place(Size inner, Rect outer) const;
};

inline constexpr Alignment Alignment::center{};
inline constexpr Alignment Alignment::leading{HorizontalAlignment::leading};
inline constexpr Alignment Alignment::top{HorizontalAlignment::center, VerticalAlignment::top};
inline constexpr Alignment Alignment::topLeading{HorizontalAlignment::leading,
                                                 VerticalAlignment::top};

}  // namespace lunoval::ui
