#include "ui/geometry.hpp"

namespace lunoval::ui {

Transform Transform::rotation(double radians, Point pivot) {
    const double cosine = std::cos(radians);
    const double sine = std::sin(radians);
    const Transform turn{cosine, sine, -sine, cosine, 0, 0};
    return translation(pivot.x, pivot.y).after(turn.after(translation(-pivot.x, -pivot.y)));
}

Transform Transform::after(const Transform& first) const {
    return {a * first.a + c * first.b,        b * first.a + d * first.b,
            a * first.c + c * first.d,        b * first.c + d * first.d,
            a * first.tx + c * first.ty + tx, b * first.tx + d * first.ty + ty};
}

namespace {

double offset(double inner, double outer, int position) {
    return position == 0 ? 0 : position == 1 ? (outer - inner) / 2 : outer - inner;
}

}  // namespace

Point Alignment::place(Size inner, Rect outer) const {
    return {outer.x + offset(inner.width, outer.width, static_cast<int>(horizontal)),
            outer.y + offset(inner.height, outer.height, static_cast<int>(vertical))};
}

}  // namespace lunoval::ui
