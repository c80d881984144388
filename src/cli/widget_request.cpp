#include "cli/widget_request.hpp"

#include <sstream>

#include "locations/widget_location_cache.hpp"
#include "platform/main_queue.hpp"
#include "timeline/entry_details.hpp"
#include "timeline/moon_widget_timeline_provider.hpp"

#include "cli/device.hpp"

namespace lunoval::cli {

namespace {

std::vector<std::string> kindNames() {
    std::vector<std::string> names;
    for (const auto& widget : LunovalWidgetBundle::body()) names.emplace_back(widget.kind);
    return names;
}

std::string familyNames(const std::vector<widgetkit::WidgetFamily>& families) {
    std::string names;
    for (const auto family : families) {
        names += (names.empty() ? "" : ", ") + std::string(widgetkit::familyName(family));
    }
    return names;
}

// Also keeps every wait within poll's millisecond count.
constexpr double kMaxMinutes = 7 * 24 * 60;

}  // namespace

void addWidgetRequestOptions(CLI::App& command, WidgetRequest& request) {
    command.add_option("--kind", request.kind, "The widget kind")
        ->check(CLI::IsMember(kindNames()));
    command.add_option("--family", request.family, "The widget family")
        ->check(CLI::IsMember(widgetkit::familyNames()));
    auto* snapshot = command.add_flag("--snapshot", request.snapshot, "A snapshot, not a timeline");
    auto* placeholder =
        command.add_flag("--placeholder", request.placeholder, "The placeholder entry");
    auto* preview = command.add_flag("--preview", request.preview, "A snapshot for the gallery");
    snapshot->excludes(placeholder)->excludes(preview);
    placeholder->excludes(preview);
}

std::pair<WidgetKind, widgetkit::WidgetFamily> requestedWidget(const WidgetRequest& request) {
    const auto widget = LunovalWidgetBundle::widget(request.kind);
    const auto family = widgetkit::widgetFamily(request.family);
    if (!widget) throw UsageError("unknown widget kind '" + request.kind + "'");
    if (!family) throw UsageError("unknown widget family '" + request.family + "'");
    if (!widget->supports(*family)) {
        throw UsageError(request.kind + " has no " + request.family + " size (it offers " +
                         familyNames(widget->supportedFamilies) + ")");
    }
    return {*widget, *family};
}

std::pair<WidgetKind, widgetkit::WidgetFamily> widgetChoice(const std::string& text) {
    const auto colon = text.find(':');
    if (colon == std::string::npos) {
        throw UsageError("--widgets wants KIND:FAMILY, not '" + text + "'");
    }
    return requestedWidget({.kind = text.substr(0, colon), .family = text.substr(colon + 1)});
}

std::string counted(double number, const std::string& noun) {
    std::ostringstream text;
    text << number << " " << noun << (number == 1 ? "" : "s");
    return text.str();
}

void addMinIntervalOption(CLI::App& command, double& minutes) {
    addNumberOption(command, "--min-interval", minutes,
                    "Minutes between refreshes without a reload request (default 15)",
                    {0, kMaxMinutes});
}

void requireMinInterval(double minutes) {
    if (minutes <= 0) {
        throw UsageError("--min-interval must be more than 0 and at most " +
                         counted(kMaxMinutes, "minute"));
    }
}

void requestEntry(const WidgetRequest& request, widgetkit::WidgetFamily family,
                  EntryPurpose purpose, const std::function<void(const MoonWidgetEntry&)>& use) {
    EventLoopQueue queue;
    const auto requestContext = device::requestContext(queue);
    const MoonWidgetTimelineProvider provider(queue, requestContext, appGroupDefaults());
    const widgetkit::Context context{.family = family, .isPreview = request.preview};
    const auto answer = [&](MoonWidgetEntry entry) {
        switch (purpose) {
            case EntryPurpose::print:
                break;
            case EntryPurpose::summarize:
                entry.details.format = localFormat(entry.widgetData, requestContext);
                break;
            case EntryPurpose::draw:
                entry = withDetails(std::move(entry), requestContext);
                break;
        }
        use(entry);
    };

    if (request.placeholder) {
        answer(provider.placeholder(context));
        return;
    }
    std::optional<MoonWidgetEntry> entry;
    bool finished = true;
    if (request.snapshot || request.preview) {
        provider.snapshot({}, context, [&](MoonWidgetEntry answer) { entry = std::move(answer); });
    } else {
        finished = false;
        provider.timeline(
            {}, context,
            [&](widgetkit::Timeline<MoonWidgetEntry> timeline) {
                entry = std::move(timeline.entries.front());
            },
            [&] { finished = true; });
    }
    queue.runUntil([&] { return entry.has_value(); });
    if (!entry) throw std::runtime_error("the widget provider did not answer");
    answer(*entry);
    queue.runUntil([&] { return finished; });
}

}  // namespace lunoval::cli
