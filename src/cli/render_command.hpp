#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "app/widget_renderer.hpp"
#include "cli/device_options.hpp"
#include "cli/widget_request.hpp"

namespace lunoval::cli {

struct RenderCommandOptions {
    WidgetRequest request;
    std::optional<std::string> out;  // default: <kind>-<family>.png
    RenderOptions render;
};

// --scale, --mode and --color-scheme, shared by the commands that draw widgets.
void addRenderOptions(CLI::App& command, RenderOptions& options);

// <kind>-<family>.png
std::string defaultImageName(const WidgetRequest& request);

// Throws UsageError unless the file's extension names an image format we write.
void requireImageFormat(const std::string& path);

CLI::App* addRenderCommand(CLI::App& app, RenderCommandOptions& options);

// One widget image through the provider, as the host would show it.
int runRender(const RenderCommandOptions& options);

}  // namespace lunoval::cli
