#pragma once

#include "platform/widget_center.hpp"

namespace lunoval {

// Asks the widget host to reload every timeline; without a running host nothing happens.
struct WidgetReloader {
    static void reloadAllTimelines() { widgetkit::reloadAllTimelines(); }
};

}  // namespace lunoval
