#pragma once

#include "timeline/moon_widget_data.hpp"
#include "ui/view.hpp"
#include "views/widget_environment.hpp"

namespace lunoval {

// The moon times widget: picks its layout by family; nothing for families it does not offer.
struct MoonTimesWidgetEntryView {
    MoonWidgetEntry entry;
    WidgetEnvironment environment;

    [[nodiscard]] ui::View body() const;
};

// The moon and sun times widget: the small layout only.
struct MoonSunTimesWidgetEntryView {
    MoonWidgetEntry entry;
    WidgetEnvironment environment;

    [[nodiscard]] ui::View body() const;
};

// Date block, small moon, and the moon's rise and set.
struct SmallMoonTimesView {
    MoonWidgetEntry entry;

    [[nodiscard]] ui::View body() const;
};

// As SmallMoonTimesView, with the sun's rise and set before the moon's.
struct SmallMoonAndSunTimes {
    MoonWidgetEntry entry;

    [[nodiscard]] ui::View body() const;
};

}  // namespace lunoval
