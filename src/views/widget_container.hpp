#pragma once

#include <functional>

#include "platform/widgetkit.hpp"
#include "timeline/moon_widget_data.hpp"
#include "ui/view.hpp"

namespace lunoval {

enum class WidgetBackgroundStyle { sun, moon };

// The dark backdrop behind every widget; both styles paint the same layers.
struct WidgetBackground {
    WidgetBackgroundStyle style = WidgetBackgroundStyle::moon;

    [[nodiscard]] ui::View body() const;
};

// Asks for location access; tapping it opens the host app's settings.
struct WidgetPermissionView {
    [[nodiscard]] ui::View body() const;
};

// A widget's own layout, or the permission prompt when its record needs location access.
struct WidgetContainer {
    MoonWidgetEntry entry;
    widgetkit::WidgetFamily widgetFamily = widgetkit::WidgetFamily::systemSmall;
    std::function<ui::View()> content;

    [[nodiscard]] ui::View body() const;
};

// Shown where a widget has no record yet: a cyan moon over "Open Lunoval".
ui::View moonPlaceholder();
// Shown where a sun-related widget has no data.
ui::View sunPlaceholder();

}  // namespace lunoval
