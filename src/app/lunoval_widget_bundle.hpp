#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/widgetkit.hpp"

namespace lunoval {

// One widget the bundle offers. The kind strings key the user's placed widgets, so they never
// change; the display name and description are localization keys. What the widget draws is the
// renderer's: the commands that only ask for entries never load the drawing libraries.
struct WidgetKind {
    std::string_view kind;
    const char* displayName;
    const char* description;
    std::vector<widgetkit::WidgetFamily> supportedFamilies;

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
