#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "cli/device_options.hpp"

namespace lunoval::cli {

struct TimelineOptions {
    std::string kind = "MoonPhaseWidget";
    std::string family = "systemSmall";
    bool snapshot = false;
    bool placeholder = false;
    bool preview = false;
    bool json = false;
};

CLI::App* addTimelineCommand(CLI::App& app, TimelineOptions& options);

// One request from the widget host's side, through location resolution.
int runTimeline(const TimelineOptions& options, const DeviceOptions& device);

}  // namespace lunoval::cli
