#pragma once

#include <vector>

#include "ui/geometry.hpp"

namespace lunoval {

enum class MarkerFreedom { slides, stays };

// A marker symbol's frame where it would be drawn, and whether it may be moved aside.
struct MarkerBox {
    ui::Rect frame;
    MarkerFreedom freedom = MarkerFreedom::slides;
};

// The frames moved into `plot`, and then sideways as little as possible so that none overlaps
// another: sliding markers keep their order, and one that stays moves only if the plot's edge
// leaves no room beside it.
std::vector<ui::Rect> spreadMarkers(const std::vector<MarkerBox>& boxes, ui::Rect plot);

}  // namespace lunoval
