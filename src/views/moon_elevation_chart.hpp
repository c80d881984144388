#pragma once

#include "timeline/widget_details.hpp"
#include "ui/view.hpp"

namespace lunoval {

// The moon's altitude over one local day of a place: a curve over a horizon line, with the
// rise and set marked and the moon where it stands now. It fills whatever size it is offered.
// The medium widget passes only the entry's day, so the flags default to its look.
struct MoonElevationChart {
    ElevationDay day;
    // The labels' times.
    LocalFormat format;
    bool showCurrentPosition = true;
    bool showLabel = false;
    bool showNoon = false;
    ui::RenderingMode widgetRenderingMode = ui::RenderingMode::fullColor;

    [[nodiscard]] ui::View body() const;
};

}  // namespace lunoval
