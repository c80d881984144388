#pragma once

#include "timeline/moon_widget_data.hpp"
#include "ui/view.hpp"

namespace lunoval {

// The lock-screen accessories, shown by the host in its tinted or vibrant style.

struct LockScreenInlineMoonPhaseView {
    MoonWidgetEntry entry;

    [[nodiscard]] ui::View body() const;
};

struct LockScreenCircularMoonPhaseView {
    MoonWidgetEntry entry;

    [[nodiscard]] ui::View body() const;
};

struct LockScreenRectangularMoonPhaseView {
    MoonWidgetEntry entry;
    double fontSize = 13;

    [[nodiscard]] ui::View body() const;
};

struct LockScreenInlineTimesView {
    MoonWidgetEntry entry;

    [[nodiscard]] ui::View body() const;
};

struct LockScreenCircularMoonTimesView {
    MoonWidgetEntry entry;
    double fontSize = 12;

    [[nodiscard]] ui::View body() const;
};

struct LockScreenRectangularTimesView {
    MoonWidgetEntry entry;
    double fontSize = 13;

    [[nodiscard]] ui::View body() const;
};

}  // namespace lunoval
