#pragma once

#include "platform/widgetkit.hpp"
#include "ui/color.hpp"

namespace lunoval {

// What the host tells a widget's entry view besides the entry: the size it is shown at and
// how it is shown.
struct WidgetEnvironment {
    widgetkit::WidgetFamily family = widgetkit::WidgetFamily::systemSmall;
    ui::ColorScheme colorScheme = ui::ColorScheme::dark;
    ui::RenderingMode renderingMode = ui::RenderingMode::fullColor;
};

}  // namespace lunoval
