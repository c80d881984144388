#include "cli/timeline_command.hpp"

#include <iostream>
#include <nlohmann/json.hpp>

#include "app/widget_kinds.hpp"
#include "locations/widget_location_cache.hpp"
#include "platform/log.hpp"
#include "platform/main_queue.hpp"
#include "platform/widgetkit.hpp"
#include "timeline/moon_widget_timeline_provider.hpp"

namespace lunoval::cli {

namespace {

std::vector<std::string> kindNames() {
    std::vector<std::string> names;
    for (const auto& kind : widgetKinds()) names.emplace_back(kind.kind);
    return names;
}

// The host never asks a widget for a size it does not offer.
widgetkit::WidgetFamily supportedFamily(const TimelineOptions& options) {
    const auto kind = widgetKind(options.kind);
    const auto family = widgetkit::widgetFamily(options.family);
    if (kind->supports(*family)) return *family;
    std::string offered;
    for (const auto supported : kind->supportedFamilies) {
        offered += (offered.empty() ? "" : ", ") + std::string(widgetkit::familyName(supported));
    }
    throw UsageError(options.kind + " has no " + options.family + " size (it offers " + offered +
                     ")");
}

nlohmann::ordered_json entryJson(const MoonWidgetEntry& entry) {
    return {{"date", entry.date.timeIntervalSince1970()},
            {"widgetData", entry.widgetData ? nlohmann::ordered_json(recordJson(*entry.widgetData))
                                            : nlohmann::ordered_json(nullptr)}};
}

}  // namespace

CLI::App* addTimelineCommand(CLI::App& app, TimelineOptions& options) {
    auto* command = app.add_subcommand(
        "timeline", "Ask the widget provider for one entry, as the widget host does");
    command->add_option("--kind", options.kind, "The widget kind")
        ->check(CLI::IsMember(kindNames()));
    command->add_option("--family", options.family, "The widget family")
        ->check(CLI::Validator(
            [](const std::string& name) {
                return widgetkit::widgetFamily(name) ? std::string{}
                                                     : "unknown widget family '" + name + "'";
            },
            "FAMILY"));
    auto* snapshot =
        command->add_flag("--snapshot", options.snapshot, "A snapshot, not a timeline");
    auto* placeholder =
        command->add_flag("--placeholder", options.placeholder, "The placeholder entry");
    auto* preview = command->add_flag("--preview", options.preview, "A snapshot for the gallery");
    snapshot->excludes(placeholder)->excludes(preview);
    placeholder->excludes(preview);
    command->add_flag("--json", options.json,
                      "Diagnostics to standard error, JSON alone on output");
    return command;
}

int runTimeline(const TimelineOptions& options, const DeviceOptions& device) {
    const auto family = supportedFamily(options);
    if (options.json) log::toStandardError(true);
    EventLoopQueue queue;
    const auto service = locationService(device);
    const MoonWidgetTimelineProvider provider(
        queue, [&] { return makeLocationManager(service, queue); }, appGroupDefaults());
    const widgetkit::Context context{.family = family, .isPreview = options.preview};

    std::optional<MoonWidgetEntry> entry;
    if (options.placeholder) {
        entry = provider.placeholder(context);
    } else if (options.snapshot || options.preview) {
        provider.snapshot({}, context, [&](MoonWidgetEntry answer) { entry = std::move(answer); });
    } else {
        provider.timeline({}, context, [&](widgetkit::Timeline<MoonWidgetEntry> timeline) {
            entry = std::move(timeline.entries.front());
        });
    }
    queue.runUntil([&] { return entry.has_value(); });
    if (!entry) return 1;
    std::cout << entryJson(*entry).dump(options.json ? -1 : 2) << "\n";
    return 0;
}

}  // namespace lunoval::cli
