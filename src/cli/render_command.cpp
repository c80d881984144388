#include "cli/render_command.hpp"

#include <iostream>

#include "cli/drawing_commands.hpp"
#include "ui/painter.hpp"
#include "ui/pango_text_measurer.hpp"

namespace lunoval::cli {

void addRenderOptions(CLI::App& command, RenderOptions& options) {
    addNumberOption(command, "--scale", options.scale, "Device pixels per point", kScaleRange);
    addChoiceOption(command, "--mode", options.mode,
                    std::vector<std::pair<std::string, ui::RenderingMode>>{
                        {"fullColor", ui::RenderingMode::fullColor},
                        {"accented", ui::RenderingMode::accented},
                        {"vibrant", ui::RenderingMode::vibrant}},
                    "The lock screen's style (default: vibrant there)");
    addChoiceOption(command, "--color-scheme", options.colorScheme,
                    std::vector<std::pair<std::string, ui::ColorScheme>>{
                        {"dark", ui::ColorScheme::dark}, {"light", ui::ColorScheme::light}},
                    "The system's appearance");
}

std::string defaultImageName(const WidgetRequest& request) {
    return request.kind + "-" + request.family + ".png";
}

void requireImageFormat(const std::string& path) {
    if (!ui::imageFormatFor(path)) {
        throw UsageError("cannot tell the image format of '" + path + "' (use .png, .svg or .pdf)");
    }
}

CLI::App* addRenderCommand(CLI::App& app, RenderCommandOptions& options) {
    auto* command = app.add_subcommand(kRenderCommand.name, kRenderCommand.description);
    addWidgetRequestOptions(*command, options.request);
    command->add_option("--out", options.out, "The image: .png, .svg or .pdf");
    addRenderOptions(*command, options.render);
    return command;
}

int runRender(const RenderCommandOptions& options) {
    const auto widget = requestedWidget(options.request);
    const auto out = options.out.value_or(defaultImageName(options.request));
    requireImageFormat(out);
    requestEntry(options.request, widget.second, EntryPurpose::draw,
                 [&](const MoonWidgetEntry& entry) {
                     const ui::PangoTextMeasurer measurer;
                     const auto rendered =
                         renderWidget(widget.first, widget.second, entry, options.render, measurer);
                     ui::writeImage(rendered.list, rendered.environment, out);
                 });
    std::cout << "Wrote " << out << "\n";
    return 0;
}

}  // namespace lunoval::cli
