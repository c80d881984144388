#include "app/widget_kinds.hpp"

#include <algorithm>

namespace lunoval {

using enum widgetkit::WidgetFamily;

bool WidgetKind::supports(widgetkit::WidgetFamily family) const {
    return std::ranges::find(supportedFamilies, family) != supportedFamilies.end();
}

std::span<const WidgetKind> widgetKinds() {
    // Kinds 1 and 3 share their name and description, the next-event widget is called "Moon
    // Times" and the phase widget has a large size but no medium one: all as published.
    static const std::vector<WidgetKind> kinds{
        {"MoonSunTimesWidget", "Moon & Sun Times", "Moon and sun rise/set times", {systemSmall}},
        {"MoonEventWidget",
         "Moon Times",
         "View moon phase and next full moon or new moon event",
         {systemSmall}},
        {"MoonTimesWidget",
         "Moon & Sun Times",
         "Moon and sun rise/set times",
         {systemSmall, systemMedium, accessoryRectangular, accessoryCircular, accessoryInline}},
        {"MoonPhaseWidget",
         "Moon Phase",
         "View moon phases and times",
         {systemSmall, systemLarge, accessoryCircular, accessoryRectangular, accessoryInline}},
    };
    return kinds;
}

std::optional<WidgetKind> widgetKind(std::string_view kind) {
    const auto kinds = widgetKinds();
    const auto found = std::ranges::find(kinds, kind, &WidgetKind::kind);
    if (found == kinds.end()) return std::nullopt;
    return *found;
}

}  // namespace lunoval
