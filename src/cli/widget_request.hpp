#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "app/lunoval_widget_bundle.hpp"
#include "cli/device_options.hpp"
#include "timeline/moon_widget_data.hpp"

namespace lunoval::cli {

// Which widget, at which size, and what the host asks its provider for.
struct WidgetRequest {
    std::string kind = "MoonPhaseWidget";
    std::string family = "systemSmall";
    bool snapshot = false;
    bool placeholder = false;
    bool preview = false;
};

// --kind, --family and the three exclusive request flags.
void addWidgetRequestOptions(CLI::App& command, WidgetRequest& request);

// The widget and family; throws UsageError for a size the widget does not offer, as the host
// never asks for one.
std::pair<WidgetKind, widgetkit::WidgetFamily> requestedWidget(const WidgetRequest& request);

// A widget and size written KIND:FAMILY, as --widgets takes them; throws UsageError otherwise.
std::pair<WidgetKind, widgetkit::WidgetFamily> widgetChoice(const std::string& text);

// --min-interval, a host's refresh budget in minutes (default 15).
void addMinIntervalOption(CLI::App& command, double& minutes);
// Throws UsageError unless the budget is more than 0.
void requireMinInterval(double minutes);

// "1 widget", "2 widgets".
std::string counted(double number, const std::string& noun);

// What the entry is asked for: an entry to be drawn carries what the views show besides the
// record; one to be summed up in a line only how its times are written.
enum class EntryPurpose { print, summarize, draw };

// One entry from the provider, through location resolution for a timeline, handed to `use` as
// soon as it is there; returns once the request's remaining work (a late fix to cache) is done,
// so no location manager outlives it.
void requestEntry(const WidgetRequest& request, widgetkit::WidgetFamily family,
                  EntryPurpose purpose, const std::function<void(const MoonWidgetEntry&)>& use);

}  // namespace lunoval::cli
