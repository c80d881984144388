#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/widgetkit.hpp"

namespace lunoval {

// One widget the bundle offers. The kind strings key the user's placed widgets, so they never
// change; the display name and description are localization keys.
struct WidgetKind {
    std::string_view kind;
    const char* displayName;
    const char* description;
    std::vector<widgetkit::WidgetFamily> supportedFamilies;

    bool supports(widgetkit::WidgetFamily family) const;
};

// The bundle's widgets, in the order the gallery shows them.
std::span<const WidgetKind> widgetKinds();
std::optional<WidgetKind> widgetKind(std::string_view kind);

}  // namespace lunoval
