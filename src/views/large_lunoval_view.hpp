#pragma once

#include "timeline/moon_widget_data.hpp"
#include "ui/color.hpp"
#include "ui/view.hpp"

namespace lunoval {

// The phase widget at the large size: the entry's month as a grid from Sunday, each day with
// its moon.
struct LargeLunovalView {
    MoonWidgetEntry entry;
    ui::ColorScheme colorScheme = ui::ColorScheme::dark;

    [[nodiscard]] ui::View body() const;
};

}  // namespace lunoval
