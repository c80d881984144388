#pragma once

#include <CLI/CLI.hpp>

#include "cli/device_options.hpp"
#include "cli/widget_request.hpp"

namespace lunoval::cli {

struct TimelineOptions {
    WidgetRequest request;
    bool json = false;
};

CLI::App* addTimelineCommand(CLI::App& app, TimelineOptions& options);

// One request from the widget host's side, through location resolution.
int runTimeline(const TimelineOptions& options);

}  // namespace lunoval::cli
