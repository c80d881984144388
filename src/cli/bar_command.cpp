#include "cli/bar_command.hpp"

#include <iostream>
#include <nlohmann/json.hpp>
#include <numeric>
#include <thread>

#include "app/moon_summary.hpp"
#include "cli/widget_request.hpp"
#include "platform/localization.hpp"
#include "platform/log.hpp"
#include "platform/refresh_schedule.hpp"

namespace lunoval::cli {

namespace {

std::string joined(const std::vector<std::string>& lines, const std::string& separator) {
    return std::accumulate(lines.begin(), lines.end(), std::string(),
                           [&](const std::string& all, const std::string& line) {
                               return all.empty() ? line : all + separator + line;
                           });
}

// What the bar shows while the widget asks for location access or has no record.
MoonSummary noMoon() {
    return {.symbol = "🌑",
            .phaseName = l10n::localized("Location Access Required"),
            .caseName = "none"};
}

std::string barLine(const MoonSummary& summary, BarFormat format) {
    const auto text = summary.symbol + " " + std::to_string(summary.litPercent) + "%";
    if (format == BarFormat::plain) return text + " " + summary.phaseName;
    std::vector<std::string> tooltip{summary.title()};
    tooltip.insert(tooltip.end(), summary.details.begin(), summary.details.end());
    const nlohmann::ordered_json line{{"text", text},
                                      {"tooltip", joined(tooltip, "\n")},
                                      {"class", summary.caseName},
                                      {"percentage", summary.litPercent}};
    return line.dump();
}

std::string currentLine(BarFormat format) {
    std::string line;
    requestEntry({}, widgetkit::WidgetFamily::systemSmall, EntryPurpose::summarize,
                 [&](const MoonWidgetEntry& entry) {
                     const auto summary = moonSummary(entry);
                     line = barLine(summary.value_or(noMoon()), format);
                 });
    return line;
}

}  // namespace

CLI::App* addBarCommand(CLI::App& app, BarOptions& options) {
    auto* command =
        app.add_subcommand("bar", "The moon of the moment for a status bar, a line per change");
    addChoiceOption(*command, "--format", options.format,
                    std::vector<std::pair<std::string, BarFormat>>{{"waybar", BarFormat::waybar},
                                                                   {"plain", BarFormat::plain}},
                    "JSON for waybar, or text for polybar and i3blocks (default waybar)");
    command->add_flag_callback(
        "--once", [&options] { options.runs = BarRuns::once; }, "Print one line and end");
    addMinIntervalOption(*command, options.minInterval);
    return command;
}

int runBar(const BarOptions& options) {
    requireMinInterval(options.minInterval);
    // Standard output is the bar's.
    log::toStandardError(true);
    std::string shown;
    for (;;) {
        const auto start = widgetkit::RefreshSchedule::Clock::now();
        auto line = currentLine(options.format);
        if (line != shown) std::cout << line << std::endl;
        if (options.runs == BarRuns::once) return 0;
        shown = std::move(line);
        const auto schedule = widgetkit::RefreshSchedule::after(
            start, widgetkit::RefreshSchedule::Clock::now(), options.minInterval);
        std::this_thread::sleep_until(schedule.due());
    }
}

}  // namespace lunoval::cli
