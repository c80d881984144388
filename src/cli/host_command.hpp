#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "app/widget_renderer.hpp"
#include "cli/device_options.hpp"

namespace lunoval::cli {

struct HostOptions {
    std::string out;
    std::vector<std::string> widgets;  // KIND:FAMILY; none: every widget in every size it offers
    double minInterval = 15;           // minutes between refreshes that no request asked for
    RenderOptions render;
};

CLI::App* addHostCommand(CLI::App& app, HostOptions& options);

// Keeps the widgets' images fresh, as the widget host does, until SIGINT or SIGTERM.
int runHost(const HostOptions& options);

}  // namespace lunoval::cli
