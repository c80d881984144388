#pragma once

#include "timeline/moon_widget_data.hpp"
#include "ui/view.hpp"
#include "views/widget_environment.hpp"

namespace lunoval {

// The moon phase widget: picks its layout by family.
struct MoonPhaseWidgetEntryView {
    MoonWidgetEntry entry;
    WidgetEnvironment environment;

    [[nodiscard]] ui::View body() const;
};

// The phase widget at the small size: the moon with its glow, name, lit fraction and the day's
// rise and set.
struct SmallMoonPhaseView {
    MoonWidgetEntry entry;

    [[nodiscard]] ui::View body() const;
};

// The medium layout: moon column, elevation chart, elevation and rise/set columns.
struct MediumMoonView {
    MoonWidgetEntry entry;

    [[nodiscard]] ui::View body() const;
};

}  // namespace lunoval
