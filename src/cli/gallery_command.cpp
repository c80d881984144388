#include "cli/gallery_command.hpp"

#include <algorithm>
#include <filesystem>
#include <future>
#include <thread>
#include <vector>

#include "cli/drawing_commands.hpp"
#include "cli/drawing_queue.hpp"
#include "cli/preferences_command.hpp"
#include "cli/render_command.hpp"
#include "cli/widget_request.hpp"
#include "locations/widget_location_cache.hpp"
#include "platform/files.hpp"
#include "ui/painter.hpp"
#include "ui/pango_text_measurer.hpp"

namespace lunoval::cli {

namespace {

// Without any place to go on the phone's gallery shows previews; with one, real entries.
bool hasPlace(const DeviceOptions& device) {
    return device.location || device.locationService ||
           appGroupDefaults().dataForKey("widgetData").has_value();
}

}  // namespace

void writeGallery(const std::filesystem::path& folder, std::vector<GalleryItem>& items,
                  const MoonWidgetEntry& entry, const RenderOptions& options,
                  const ui::TextMeasurer& measurer, DrawingCores cores) {
    // The images do not depend on one another: every core draws, taking the next one that fits.
    std::vector<double> areas;
    areas.reserve(items.size());
    for (const auto& item : items) {
        const auto size = widgetkit::familySize(item.family);
        areas.push_back(size.width * size.height);
    }
    DrawingQueue queue(areas);
    const auto drawRemaining = [&] {
        while (const auto index = queue.take()) {
            const DrawingQueue::Drawn drawn(queue, *index);
            auto& item = items[*index];
            const auto rendered = renderWidget(item.widget, item.family, entry, options, measurer);
            item.tapURL = rendered.list.widgetURL;
            ui::writeImage(rendered.list, rendered.environment, folder / item.imageName());
        }
    };
    const auto helpers =
        cores == DrawingCores::one
            ? 1
            : std::min<std::size_t>(std::thread::hardware_concurrency(), items.size());
    std::vector<std::future<void>> drawing;
    for (std::size_t helper = 1; helper < helpers; ++helper) {
        drawing.push_back(std::async(std::launch::async, drawRemaining));
    }
    drawRemaining();
    for (auto& helper : drawing) helper.get();
    writeFileAtomically(folder / "index.html", galleryPage(items, entry));
}

std::vector<GalleryItem> allWidgets() {
    std::vector<GalleryItem> items;
    for (const auto& widget : LunovalWidgetBundle::body()) {
        for (const auto family : widget.supportedFamilies) items.push_back({widget, family, {}});
    }
    return items;
}

CLI::App* addGalleryCommand(CLI::App& app, GalleryOptions& options) {
    auto* command = app.add_subcommand(kGalleryCommand.name, kGalleryCommand.description);
    command->add_option("--out", options.out,
                        "The folder for the images and the page (default: the stored "
                        "outputFolder preference)");
    addRenderOptions(*command, options.render);
    return command;
}

int runGallery(const GalleryOptions& options, const DeviceOptions& device) {
    const std::filesystem::path folder(requiredOutputFolder(options.out));
    std::filesystem::create_directories(folder);
    // One provider request serves every widget: they would all get the same entry.
    const WidgetRequest request{.preview = !hasPlace(device)};
    auto items = allWidgets();
    requestEntry(request, widgetkit::WidgetFamily::systemSmall, EntryPurpose::draw,
                 [&](const MoonWidgetEntry& entry) {
                     writeGallery(folder, items, entry, options.render, ui::PangoTextMeasurer{},
                                  DrawingCores::every);
                 });
    return 0;
}

}  // namespace lunoval::cli
