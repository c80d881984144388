#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/widgetkit.hpp"
#include "timeline/moon_widget_data.hpp"
#include "ui/view.hpp"
#include "views/widget_environment.hpp"

namespace lunoval {

// One widget the bundle offers. The kind strings key the user's placed widgets, so they never
// change; the display name and description are localization keys.
struct WidgetKind {
    std::string_view kind;
    const char* displayName;
    const char* description;
    std::vector<widgetkit::WidgetFamily> supportedFamilies;
    ui::View (*entryView)(const MoonWidgetEntry& entry, const WidgetEnvironment& environment);

    [[nodiscard]] bool supports(widgetkit::WidgetFamily family) const;
};

// What the extension hands the widget host: its widgets, all configured by the same intent and
// served by the same timeline provider.
struct LunovalWidgetBundle {
    // The widgets in the order the gallery shows them.
    static std::span<const WidgetKind> body();
    static std::optional<WidgetKind> widget(std::string_view kind);
};

}  // namespace lunoval
