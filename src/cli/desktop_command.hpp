#pragma once

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "desktop/desktop_window.hpp"

namespace lunoval::cli {

enum class TrayShown { shown, hidden };

struct DesktopOptions {
    std::vector<std::string> widgets{"MoonPhaseWidget:systemSmall"};  // KIND:FAMILY
    desktop::Placement placement;
    double minInterval = 15;  // minutes between refreshes that no request asked for
    TrayShown tray = TrayShown::shown;
    std::optional<std::string> open;  // a lunoval:// link to follow instead
};

CLI::App* addDesktopCommand(CLI::App& app, DesktopOptions& options);

// The widgets on the desktop and the moon in the tray, live, until quit, SIGINT or SIGTERM.
int runDesktop(const DesktopOptions& options);

}  // namespace lunoval::cli
