#pragma once

#include <CLI/CLI.hpp>

namespace lunoval::cli {

enum class BarFormat { waybar, plain };
enum class BarRuns { untilStopped, once };

struct BarOptions {
    BarFormat format = BarFormat::waybar;
    BarRuns runs = BarRuns::untilStopped;
    double minInterval = 15;  // minutes between the provider's entries
};

CLI::App* addBarCommand(CLI::App& app, BarOptions& options);

// The moon of the moment for a status bar: one line, then another each time what it shows
// changes, until stopped.
int runBar(const BarOptions& options);

}  // namespace lunoval::cli
