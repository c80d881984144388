#pragma once

#include "timeline/moon_widget_data.hpp"
#include "ui/view.hpp"
#include "views/widget_environment.hpp"

namespace lunoval {

// The next moon event widget: the small layout only.
struct MoonEventWidgetEntryView {
    MoonWidgetEntry entry;
    WidgetEnvironment environment;

    [[nodiscard]] ui::View body() const;
};

// Date block, the moon now, the coming principal phase (and a same-day eclipse), and the moon's
// rise and set.
struct SmallMoonEventView {
    MoonWidgetEntry entry;
    double phaseIconSize = 36;    // points
    double leftColumnWidth = 42;  // points

    [[nodiscard]] ui::View body() const;
};

}  // namespace lunoval
