#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

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
};

void addDeviceOptions(CLI::App& app, DeviceOptions& options);

// Fixes the device clock, zone, locale and location services for the run; throws UsageError
// on a bad value.
void applyDeviceOptions(const DeviceOptions& options);

// "@<seconds since 1970>" or ISO 8601 with "Z" or an offset, such as 2026-03-29T00:30:00+01:00.
std::optional<Date> parseInstant(const std::string& text);

// Bad input from the user: one line on standard error, exit status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A number option that must be finite and within ±limit.
CLI::Validator coordinateWithin(double limit);

}  // namespace lunoval::cli
