#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include <filesystem>
#include <vector>

#include "app/widget_renderer.hpp"
#include "cli/device_options.hpp"
#include "cli/gallery_page.hpp"

namespace lunoval::cli {

struct GalleryOptions {
    std::string out;
    RenderOptions render;
};

// A gallery is drawn once and waited for: every core draws. A host stays resident and redraws
// in the background, where memory counts for more than the time of one refresh.
enum class DrawingCores { every, one };

// Every widget in `items`, as shown with `entry`, written atomically into `folder` with the page
// that shows them; each item learns its tap target. The images share `measurer`.
void writeGallery(const std::filesystem::path& folder, std::vector<GalleryItem>& items,
                  const MoonWidgetEntry& entry, const RenderOptions& options,
                  const ui::TextMeasurer& measurer, DrawingCores cores);

// Every widget of the bundle in every size it offers.
std::vector<GalleryItem> allWidgets();

CLI::App* addGalleryCommand(CLI::App& app, GalleryOptions& options);

// Every widget in every size it offers, and a page that shows them.
int runGallery(const GalleryOptions& options, const DeviceOptions& device);

}  // namespace lunoval::cli
