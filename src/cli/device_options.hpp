#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "platform/calendar.hpp"
#include "platform/date.hpp"
#include "platform/location_services.hpp"

namespace lunoval::cli {

// Options that set up the device the command stands in for; valid on every command.
struct DeviceOptions {
    std::optional<std::string> at;
    std::optional<std::string> timeZone;
    std::optional<std::string> locale;
    std::optional<std::string> location;
    std::optional<std::string> locationService;
    bool quiet = false;
};

inline constexpr const char* kDeviceOptionsGroup = "Device options (on every command)";

void addDeviceOptions(CLI::App& app, DeviceOptions& options);

// --lat and --lng, given together or not at all.
void addCoordinateOptions(CLI::App& command, std::optional<double>& latitude,
                          std::optional<double>& longitude);

// The zone of the database of that name; throws UsageError naming the form expected.
TimeZone zoneNamed(const std::string& identifier);

// Without --timezone, the device takes the zone of the nearest city of the world locations,
// and says so.
void takeZoneOfNearestCity(const DeviceOptions& options, double latitude, double longitude);

// Fixes the device clock, zone, locale and location services for the run; throws UsageError
// on a bad value. Without --timezone, the place a command names chooses the zone, as
// --location does; the clock is read in the zone chosen.
void applyDeviceOptions(const DeviceOptions& options,
                        std::optional<Location> commandPlace = std::nullopt);

// "@<seconds since 1970>", ISO 8601 with "Z" or an offset, such as 2026-03-29T00:30:00+01:00,
// or in the calendar's zone: "today" and "tomorrow" (their starts), a date (its start) or a
// date and time without an offset; in the years -9999 to 9999. "now" is the caller's.
std::optional<Date> parseInstant(const std::string& text, const Calendar& calendar);

// Bad input from the user: one line on standard error, exit status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The values a number option takes, both ends included.
struct NumberRange {
    double min;
    double max;
};

// Device pixels per point, for the drawing commands and the stored preference.
inline constexpr NumberRange kScaleRange{0.25, 8};

// An option read as decimalNumber reads numbers; anything else, or a number outside `range`, is
// a usage error that names the range and the form expected. Targets: double,
// std::optional<double>, and whole numbers in std::optional<int> or long long.
template <class Target>
CLI::Option* addNumberOption(CLI::App& app, const std::string& name, Target& value,
                             const std::string& description, NumberRange range);

// An option that takes one of the names of `choices`, which help and errors list.
template <class Target, class Value>
CLI::Option* addChoiceOption(CLI::App& app, const std::string& name, Target& value,
                             const std::vector<std::pair<std::string, Value>>& choices,
                             const std::string& description) {
    std::vector<std::string> names;
    names.reserve(choices.size());
    for (const auto& choice : choices) names.push_back(choice.first);
    const auto read = [&value, choices](const std::string& text) {
        for (const auto& [choiceName, choice] : choices) {
            if (choiceName == text) value = choice;
        }
    };
    return app.add_option_function<std::string>(name, read, description)
        ->check(CLI::IsMember(names));
}

}  // namespace lunoval::cli
