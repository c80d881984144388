#pragma once

#include "ui/color.hpp"

namespace lunoval::ui {

// What the host tells every view about how it is shown.
struct Environment {
    double displayScale = 3;  // device pixels per point
    ColorScheme colorScheme = ColorScheme::dark;
    RenderingMode renderingMode = RenderingMode::fullColor;
    // The host's margin between a widget's edge and the content it draws over its container
    // background.
    double contentMargin = 0;
};

}  // namespace lunoval::ui
