#include "cli/eclipses_command.hpp"

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/device.hpp"
#include "cli/device_options.hpp"
#include "eclipse/eclipse_parser.hpp"
#include "eclipse/eclipse_visibility.hpp"
#include "platform/calendar.hpp"
#include "platform/date_formatter.hpp"
#include "platform/log.hpp"

namespace lunoval::cli {

namespace {

struct Listed {
    EclipseEvent event;
    std::optional<bool> isVisible;  // absent without a place
};

struct YearRange {
    int from = 0;
    int to = 0;
};

// A missing end makes a two-year window with the given one, or with the current year.
YearRange yearRange(const EclipsesOptions& options, const Calendar& calendar) {
    if (options.fromYear && options.toYear && *options.fromYear > *options.toYear) {
        throw UsageError("--from " + std::to_string(*options.fromYear) + " is after --to " +
                         std::to_string(*options.toYear));
    }
    if (options.fromYear) {
        return {*options.fromYear, options.toYear.value_or(*options.fromYear + 1)};
    }
    if (options.toYear) return {*options.toYear - 1, *options.toYear};
    const auto today = calendar.components(device::now());
    const int year = today ? today->year : 0;
    return {year, year + 1};
}

std::vector<Listed> listed(const EclipseTable& table, YearRange years,
                           const EclipsesOptions& options, const Calendar& calendar) {
    std::vector<Listed> result;
    for (const auto& [date, event] : table) {
        const auto local = calendar.components(date);
        if (!local || local->year < years.from || local->year > years.to) continue;
        Listed entry{.event = *event};
        if (options.latitude && options.longitude) {
            entry.isVisible =
                isVisibleFrom(*event, calendar.timeZone(), {*options.latitude, *options.longitude});
        }
        result.push_back(std::move(entry));
    }
    return result;
}

nlohmann::ordered_json json(const std::vector<Listed>& eclipses) {
    auto array = nlohmann::ordered_json::array();
    for (const auto& [event, isVisible] : eclipses) {
        array.push_back({{"key", event.key},
                         {"title", event.title},
                         {"datetime", event.datetime.timeIntervalSince1970()},
                         {"isLunarEvent", event.isLunarEvent},
                         {"isVisible", isVisible ? nlohmann::ordered_json(*isVisible) : nullptr}});
    }
    return array;
}

void printLines(const std::vector<Listed>& eclipses, YearRange years) {
    if (eclipses.empty()) {
        std::cout << "No catalogued eclipses from " << years.from << " to " << years.to << "\n";
    }
    const DateFormatter formatter{device::localeIdentifier(), device::timeZone()};
    for (const auto& [event, isVisible] : eclipses) {
        std::cout << formatter.mediumDateShortTime(event.datetime) << " · " << event.title << " · "
                  << (event.isLunarEvent ? "lunar" : "solar");
        if (isVisible) std::cout << (*isVisible ? " · visible here" : " · not visible here");
        std::cout << "\n";
    }
}

}  // namespace

CLI::App* addEclipsesCommand(CLI::App& app, EclipsesOptions& options) {
    auto* command =
        app.add_subcommand("eclipses", "List the catalogued eclipses of a range of years");
    addNumberOption(*command, "--from", options.fromYear, "First year (default: the current year)",
                    {1, 9999});
    addNumberOption(*command, "--to", options.toYear, "Last year (default: the year after --from)",
                    {1, 9999});
    addCoordinateOptions(*command, options.latitude, options.longitude);
    command->add_flag("--json", options.json, "Print one JSON array of the eclipses");
    return command;
}

int runEclipses(const EclipsesOptions& options) {
    const Calendar calendar(device::timeZone());
    const auto years = yearRange(options, calendar);
    if (options.json) log::toStandardError(true);
    const auto table = EclipseParser::shared().loadEvents(calendar.timeZone());
    if (!table) return 1;
    const auto eclipses = listed(*table, years, options, calendar);
    if (options.json) {
        std::cout << json(eclipses).dump() << "\n";
    } else {
        printLines(eclipses, years);
    }
    return 0;
}

}  // namespace lunoval::cli
