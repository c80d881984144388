#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/device_options.hpp"

namespace lunoval::cli {

struct MoonOptions {
    double size = 56;
    double scale = 3;
    std::string out = "moon.png";
    std::optional<std::string> phase;
    std::optional<double> illumination;
    double tilt = 0;
    bool noRotation = false;
};

CLI::App* addMoonCommand(CLI::App& app, MoonOptions& options);

// Draws the moon disc alone, for the device's place and time or for a given phase.
int runMoon(const MoonOptions& options);

}  // namespace lunoval::cli
