#include "cli/device_options.hpp"

#include <date/date.h>
#include <cmath>
#include <sstream>

#include "platform/device.hpp"
#include "platform/time_zone.hpp"

namespace lunoval::cli {

namespace {

std::optional<double> parseFiniteNumber(const std::string& text) {
    std::size_t used = 0;
    try {
        const double value = std::stod(text, &used);
        if (used != text.size() || !std::isfinite(value)) return std::nullopt;
        return value;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// GCC 12 sees a false "may be used uninitialized" deep inside date::parse.
#pragma GCC diagnostic push
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
std::optional<Date> parseIso8601(std::string text) {
    if (text.ends_with('Z') || text.ends_with('z')) text.replace(text.size() - 1, 1, "+00:00");
    for (const char* format : {"%FT%T%Ez", "%FT%R%Ez", "%FT%T%z", "%FT%R%z"}) {
        std::istringstream input(text);
        date::sys_time<std::chrono::microseconds> instant;
        input >> date::parse(format, instant);
        if (input && input.peek() == std::char_traits<char>::eof()) {
            const auto micros = instant.time_since_epoch().count();
            return Date::fromTimeIntervalSince1970(static_cast<double>(micros) / 1e6);
        }
    }
    return std::nullopt;
}
#pragma GCC diagnostic pop

// `--location LAT,LNG` is a fixed service; without either option the device has GeoClue when
// the system bus offers it.
LocationService locationService(const DeviceOptions& options) {
    if (options.locationService) {
        auto service = LocationService::parse(*options.locationService);
        if (!service) {
            throw UsageError("unknown location service '" + *options.locationService + "'");
        }
        return *service;
    }
    if (options.location) {
        const auto fix = LocationService::parseCoordinates(*options.location);
        if (!fix) throw UsageError("cannot read the location '" + *options.location + "'");
        return {LocationService::Kind::fixed, *fix};
    }
    return {LocationService::Kind::automatic};
}

}  // namespace

std::optional<Date> parseInstant(const std::string& text) {
    if (text.starts_with('@')) {
        const auto seconds = parseFiniteNumber(text.substr(1));
        if (!seconds) return std::nullopt;
        return Date::fromTimeIntervalSince1970(*seconds);
    }
    return parseIso8601(text);
}

CLI::Validator coordinateWithin(double limit) {
    return CLI::Validator(
        [limit](const std::string& text) -> std::string {
            const auto value = parseFiniteNumber(text);
            if (!value || std::fabs(*value) > limit) {
                std::ostringstream message;
                message << "'" << text << "' is not a number from " << -limit << " to " << limit;
                return message.str();
            }
            return {};
        },
        "NUMBER");
}

void addDeviceOptions(CLI::App& app, DeviceOptions& options) {
    app.add_option("--at", options.at,
                   "The device's current instant: ISO 8601 with Z or an offset, or @UNIX");
    app.add_option("--timezone", options.timeZone, "The device's time zone, such as Europe/Paris");
    app.add_option("--locale", options.locale, "The device's locale, such as de_DE");
    app.add_option("--location", options.location,
                   "The device's position LAT,LNG (a fixed location service)");
    app.add_option(
        "--location-service", options.locationService,
        "geoclue, fixed:LAT,LNG, late:SECONDS:LAT,LNG, denied, undetermined, unavailable "
        "or silent "
        "(default: geoclue where the system bus has it, else undetermined)");
}

void applyDeviceOptions(const DeviceOptions& options) {
    if (options.at) {
        const auto instant = parseInstant(*options.at);
        if (!instant) throw UsageError("cannot read the time '" + *options.at + "'");
        device::fixNow(*instant);
    }
    if (options.timeZone) {
        auto zone = TimeZone::named(*options.timeZone);
        if (!zone) throw UsageError("unknown time zone '" + *options.timeZone + "'");
        device::setTimeZone(std::move(*zone));
    }
    if (options.locale) device::setLocaleIdentifier(*options.locale);
    device::setLocationService(locationService(options));
}

}  // namespace lunoval::cli
