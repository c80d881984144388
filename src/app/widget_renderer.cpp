#include "app/widget_renderer.hpp"

#include "ui/rendering_mode.hpp"

namespace lunoval {

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
    auto list = ui::render(widget.entryView(entry, widgetEnvironment), {size.width, size.height},
                           {measurer, environment});
    const auto accent = ui::systemColor(ui::SystemColor::blue, options.colorScheme);
    return {ui::applyRenderingMode(std::move(list), mode, accent), environment};
}

}  // namespace lunoval
