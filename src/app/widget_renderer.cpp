#include "app/widget_renderer.hpp"

#include <map>

#include "ui/rendering_mode.hpp"
#include "views/moon_event_view.hpp"
#include "views/moon_phase_views.hpp"
#include "views/times_views.hpp"

namespace lunoval {

namespace {

using EntryView = ui::View (*)(const MoonWidgetEntry& entry, const WidgetEnvironment& environment);

template <typename View>
ui::View draw(const MoonWidgetEntry& entry, const WidgetEnvironment& environment) {
    return View{entry, environment}.body();
}

// Each kind of the bundle and the view its entries show.
EntryView entryView(std::string_view kind) {
    static const std::map<std::string_view, EntryView> views{
        {"MoonSunTimesWidget", draw<MoonSunTimesWidgetEntryView>},
        {"MoonEventWidget", draw<MoonEventWidgetEntryView>},
        {"MoonTimesWidget", draw<MoonTimesWidgetEntryView>},
        {"MoonPhaseWidget", draw<MoonPhaseWidgetEntryView>},
    };
    return views.at(kind);
}

}  // namespace

RenderedWidget renderWidget(const WidgetKind& widget, widgetkit::WidgetFamily family,
                            const MoonWidgetEntry& entry, const RenderOptions& options,
                            const ui::TextMeasurer& measurer) {
    const auto mode = options.mode.value_or(
        widgetkit::isAccessory(family) ? ui::RenderingMode::vibrant : ui::RenderingMode::fullColor);
    const ui::Environment environment{.displayScale = options.scale,
                                      .colorScheme = options.colorScheme,
                                      .renderingMode = mode,
                                      .contentMargin = widgetkit::contentMargin(family)};
    const WidgetEnvironment widgetEnvironment{family, options.colorScheme, mode};
    const auto size = widgetkit::familySize(family);
    auto list = ui::render(entryView(widget.kind)(entry, widgetEnvironment),
                           {size.width, size.height}, {measurer, environment});
    const auto accent = ui::systemColor(ui::SystemColor::blue, options.colorScheme);
    return {ui::applyRenderingMode(std::move(list), mode, accent), environment};
}

}  // namespace lunoval
