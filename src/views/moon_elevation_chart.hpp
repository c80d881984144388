#pragma once

#include <optional>
#include <string>

#include "platform/date.hpp"
#include "ui/view.hpp"

namespace lunoval {

// The moon's altitude over one local day of a place: a curve over a horizon line, with the
// rise and set marked and the moon where it stands now. It fills whatever size it is offered.
// The medium widget passes only the instants and the place, so the flags default to its look.
struct MoonElevationChart {
    std::optional<Date> moonrise;
    std::optional<Date> moonset;
    Date currentTime;
    std::string timezone;
    double latitude = 0;
    double longitude = 0;
    bool showCurrentPosition = true;
    bool showLabel = false;
    bool showNoon = false;
    bool isPlaceholder = false;
    ui::RenderingMode widgetRenderingMode = ui::RenderingMode::fullColor;

    [[nodiscard]] ui::View body() const;
};

}  // namespace lunoval
