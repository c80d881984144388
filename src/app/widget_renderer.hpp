#pragma once

#include <optional>

#include "app/lunoval_widget_bundle.hpp"
#include "timeline/moon_widget_data.hpp"
#include "ui/display_list.hpp"
#include "ui/environment.hpp"
#include "ui/text_measurer.hpp"

namespace lunoval {

struct RenderOptions {
    double scale = 3;
    // Absent: vibrant on the lock screen, full colour on the home screen, as the host does.
    std::optional<ui::RenderingMode> mode;
    ui::ColorScheme colorScheme = ui::ColorScheme::dark;
};

// A widget drawn as the host shows it. The list's widgetURL is where a tap takes the user.
struct RenderedWidget {
    ui::DisplayList list;
    ui::Environment environment;
};

RenderedWidget renderWidget(const WidgetKind& widget, widgetkit::WidgetFamily family,
                            const MoonWidgetEntry& entry, const RenderOptions& options,
                            const ui::TextMeasurer& measurer);

}  // namespace lunoval
