#include "app/lunoval_widget_bundle.hpp"

#include <algorithm>

#include "platform/localization.hpp"

namespace lunoval {

bool WidgetKind::supports(widgetkit::WidgetFamily family) const {
    return std::ranges::find(supportedFamilies, family) != supportedFamilies.end();
}

std::span<const WidgetKind> LunovalWidgetBundle::body() {
    using enum widgetkit::WidgetFamily;
    // Kinds 1 and 3 share their name and description, the next-event widget is called "Moon
    // Times" and the phase widget has a large size but no medium one: all as published.
    static const std::vector<WidgetKind> widgets{
        {"MoonSunTimesWidget",
         // TRANSLATORS: Widget name in the widget gallery
         l10n::translatable("Moon & Sun Times"),
         // TRANSLATORS: Widget description in the widget gallery
         l10n::translatable("Moon and sun rise/set times"),
         {systemSmall}},
        {"MoonEventWidget",
         // TRANSLATORS: Widget name in the widget gallery
         l10n::translatable("Moon Times"),
         // TRANSLATORS: Widget description in the widget gallery
         l10n::translatable("View moon phase and next full moon or new moon event"),
         {systemSmall}},
        {"MoonTimesWidget",
         // TRANSLATORS: Widget name in the widget gallery
         l10n::translatable("Moon & Sun Times"),
         // TRANSLATORS: Widget description in the widget gallery
         l10n::translatable("Moon and sun rise/set times"),
         {systemSmall, systemMedium, accessoryRectangular, accessoryCircular, accessoryInline}},
        {"MoonPhaseWidget",
         // TRANSLATORS: Widget name in the widget gallery
         l10n::translatable("Moon Phase"),
         // TRANSLATORS: Widget description in the widget gallery
         l10n::translatable("View moon phases and times"),
         {systemSmall, systemLarge, accessoryCircular, accessoryRectangular, accessoryInline}},
    };
    return widgets;
}

std::optional<WidgetKind> LunovalWidgetBundle::widget(std::string_view kind) {
    const auto widgets = body();
    const auto found = std::ranges::find(widgets, kind, &WidgetKind::kind);
    if (found == widgets.end()) return std::nullopt;
    return *found;
}

}  // namespace lunoval
