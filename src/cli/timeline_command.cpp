#include "cli/timeline_command.hpp"

#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/log.hpp"

namespace lunoval::cli {

namespace {

nlohmann::ordered_json entryJson(const MoonWidgetEntry& entry) {
    return {{"date", entry.date.timeIntervalSince1970()},
            {"widgetData", entry.widgetData ? nlohmann::ordered_json(recordJson(*entry.widgetData))
                                            : nlohmann::ordered_json(nullptr)}};
}

}  // namespace

CLI::App* addTimelineCommand(CLI::App& app, TimelineOptions& options) {
    auto* command = app.add_subcommand(
        "timeline", "Ask the widget provider for one entry, as the widget host does");
    addWidgetRequestOptions(*command, options.request);
    command->add_flag("--json", options.json,
                      "Diagnostics to standard error, JSON alone on output");
    return command;
}

int runTimeline(const TimelineOptions& options) {
    const auto family = requestedWidget(options.request).second;
    if (options.json) log::toStandardError(true);
    requestEntry(options.request, family, EntryPurpose::print, [&](const MoonWidgetEntry& entry) {
        std::cout << entryJson(entry).dump(options.json ? -1 : 2) << std::endl;
    });
    return 0;
}

}  // namespace lunoval::cli
