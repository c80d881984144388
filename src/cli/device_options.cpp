#include "cli/device_options.hpp"

#include <date/date.h>
#include <cmath>
#include <sstream>
#include <type_traits>

#include "cli/device.hpp"
#include "cli/place_names.hpp"
#include "places/world_locations.hpp"
#include "platform/calendar.hpp"
#include "platform/localization.hpp"
#include "platform/log.hpp"
#include "platform/number_text.hpp"
#include "platform/time_zone.hpp"

namespace lunoval::cli {

namespace {

// The ISO form reads a year of up to four digits and a sign; "@" seconds keep to the same years.
constexpr date::year kFirstYear{-9999};
constexpr date::year kLastYear{9999};

bool isWithinReadableYears(Date instant) {
    const auto seconds = [](date::sys_days day) {
        return std::chrono::duration<double>(day.time_since_epoch()).count();
    };
    const double t = instant.timeIntervalSince1970();
    return t >= seconds(kFirstYear / 1 / 1) && t < seconds((kLastYear + date::years{1}) / 1 / 1);
}

// GCC 12 sees a false "may be used uninitialized" deep inside date::parse.
#pragma GCC diagnostic push
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
// The whole of `text` in one of `formats`.
template <class Time>
std::optional<Time> parsedWhole(const std::string& text,
                                std::initializer_list<const char*> formats) {
    for (const char* format : formats) {
        std::istringstream input(text);
        Time time;
        input >> date::parse(format, time);
        if (input && input.peek() == std::char_traits<char>::eof()) return time;
    }
    return std::nullopt;
}
#pragma GCC diagnostic pop

std::optional<Date> parseIso8601(std::string text) {
    if (text.ends_with('Z') || text.ends_with('z')) text.replace(text.size() - 1, 1, "+00:00");
    const auto instant = parsedWhole<date::sys_time<std::chrono::microseconds>>(
        text, {"%FT%T%Ez", "%FT%R%Ez", "%FT%T%z", "%FT%R%z"});
    if (!instant) return std::nullopt;
    const auto micros = instant->time_since_epoch().count();
    return Date::fromTimeIntervalSince1970(static_cast<double>(micros) / 1e6);
}

// A wall-clock time read in the calendar's zone. A time the zone skips is the first instant
// after the gap, and a repeated one its first occurrence, as the widgets' calendar reads them:
// "2018-11-04" in São Paulo, whose clocks went from 00:00 to 01:00, starts at 01:00.
std::optional<Date> parseLocal(const std::string& text, const Calendar& calendar) {
    const auto local = parsedWhole<date::local_seconds>(text, {"%F", "%FT%T", "%FT%R"});
    if (!local) return std::nullopt;
    const auto day = date::floor<date::days>(*local);
    const date::year_month_day ymd{day};
    const date::hh_mm_ss time{*local - day};
    return calendar.date(static_cast<int>(ymd.year()), static_cast<unsigned>(ymd.month()),
                         static_cast<unsigned>(ymd.day()), time.hours().count(),
                         time.minutes().count(), time.seconds().count());
}

// The local midnight that starts the day `days` after today, or the first instant of that day
// where midnight is skipped.
std::optional<Date> startOfDayFromToday(int days, const Calendar& calendar) {
    const auto today = calendar.components(device::now());
    if (!today) return std::nullopt;
    return calendar.date(today->year, today->month, today->day + days);
}

void useZone(const std::string& identifier, const std::string& source) {
    auto zone = TimeZone::named(identifier);
    if (!zone) return;
    device::setTimeZone(std::move(*zone));
    log::note("time zone " + identifier + ", " + source + " (--timezone chooses another)");
}

// `--location LAT,LNG` or `--location CITY` is a fixed service; without either option the
// device has GeoClue when the system bus offers it.
LocationService locationService(const DeviceOptions& options) {
    if (options.locationService) {
        auto service = LocationService::parse(*options.locationService);
        if (!service) {
            throw UsageError("unknown location service '" + *options.locationService +
                             "' (geoclue, fixed:LAT,LNG, late:SECONDS:LAT,LNG, denied, "
                             "undetermined, unavailable or silent)");
        }
        return *service;
    }
    if (!options.location) return {LocationService::Kind::automatic};
    if (const auto fix = LocationService::parseCoordinates(*options.location)) {
        takeZoneOfNearestCity(options, fix->latitude, fix->longitude);
        return {LocationService::Kind::fixed, *fix};
    }
    const auto city = placeNamed(*options.location);
    if (!options.timeZone) useZone(city.timezone, "of " + city.description());
    return {LocationService::Kind::fixed, {city.latitude, city.longitude}};
}

template <class Number>
struct Read {
    using type = Number;
};
template <class Number>
struct Read<std::optional<Number>> {
    using type = Number;
};

}  // namespace

std::optional<Date> parseInstant(const std::string& text, const Calendar& calendar) {
    std::optional<Date> instant;
    if (text.starts_with('@')) {
        if (const auto seconds = decimalNumber(std::string_view(text).substr(1))) {
            instant = Date::fromTimeIntervalSince1970(*seconds);
        }
    } else if (text == "today" || text == "tomorrow") {
        instant = startOfDayFromToday(text == "today" ? 0 : 1, calendar);
    } else {
        instant = parseIso8601(text);
        if (!instant) instant = parseLocal(text, calendar);
    }
    if (!instant || !isWithinReadableYears(*instant)) return std::nullopt;
    return instant;
}

template <class Target>
CLI::Option* addNumberOption(CLI::App& app, const std::string& name, Target& value,
                             const std::string& description, NumberRange range) {
    using Number = typename Read<Target>::type;
    constexpr bool whole = std::is_integral_v<Number>;
    const auto read = [&value, name, range](const std::string& text) {
        const auto number = decimalNumber(text);
        if (!number || *number < range.min || *number > range.max ||
            (whole && std::trunc(*number) != *number)) {
            std::ostringstream message;
            message << "'" << text << "' is not " << (whole ? "a whole number" : "a number")
                    << " from " << range.min << " to " << range.max;
            throw CLI::ValidationError(name, message.str());
        }
        value = static_cast<Number>(*number);
    };
    return app.add_option_function<std::string>(name, read, description)
        ->type_name(whole ? "INTEGER" : "NUMBER");
}

template CLI::Option* addNumberOption(CLI::App&, const std::string&, double&, const std::string&,
                                      NumberRange);
template CLI::Option* addNumberOption(CLI::App&, const std::string&, std::optional<double>&,
                                      const std::string&, NumberRange);
template CLI::Option* addNumberOption(CLI::App&, const std::string&, std::optional<int>&,
                                      const std::string&, NumberRange);
template CLI::Option* addNumberOption(CLI::App&, const std::string&, long long&, const std::string&,
                                      NumberRange);

TimeZone zoneNamed(const std::string& identifier) {
    auto zone = TimeZone::named(identifier);
    if (!zone) {
        throw UsageError("unknown time zone '" + identifier +
                         "' (a zone of the time-zone database, such as Europe/Paris or UTC)");
    }
    return std::move(*zone);
}

void takeZoneOfNearestCity(const DeviceOptions& options, double latitude, double longitude) {
    if (options.timeZone) return;
    try {
        if (const auto city = places::nearestCity(latitude, longitude)) {
            useZone(city->timezone, "of " + city->description() + ", the nearest known city");
        }
    } catch (const std::runtime_error& error) {
        log::warning(std::string(error.what()) + "; the machine's time zone stays");
    }
}

void addCoordinateOptions(CLI::App& command, std::optional<double>& latitude,
                          std::optional<double>& longitude) {
    auto* north = addNumberOption(command, "--lat", latitude, "Latitude in degrees, north positive",
                                  {-90, 90});
    auto* east = addNumberOption(command, "--lng", longitude, "Longitude in degrees, east positive",
                                 {-180, 180});
    north->needs(east);
    east->needs(north);
}

void addDeviceOptions(CLI::App& app, DeviceOptions& options) {
    const std::vector<CLI::Option*> added{
        app.add_option("--at", options.at,
                       "The device's current instant: now, today, tomorrow, 2025-10-07 (its "
                       "start), 2025-10-07T21:30[:15] in the device zone, ISO 8601 with Z or an "
                       "offset, or @UNIX"),
        app.add_option("--timezone", options.timeZone,
                       "The device's time zone, such as Europe/Paris"),
        app.add_option("--locale", options.locale, "The device's locale, such as de_DE"),
        app.add_option("--location", options.location,
                       "The device's position, LAT,LNG or a city such as Paris or \"Quito, "
                       "Ecuador\" (a fixed location service; its zone unless --timezone is "
                       "given)"),
        app.add_option("--location-service", options.locationService,
                       "geoclue, fixed:LAT,LNG, late:SECONDS:LAT,LNG, denied, undetermined, "
                       "unavailable or silent (default: geoclue where the system bus has it, "
                       "else unavailable)"),
        app.add_flag("--quiet", options.quiet,
                     "No diagnostic lines or notes; errors and the output still show"),
    };
    for (auto* option : added) option->group(kDeviceOptionsGroup);
}

void applyDeviceOptions(const DeviceOptions& options, std::optional<Location> commandPlace) {
    log::setVerbosity(options.quiet ? log::Verbosity::quiet : log::Verbosity::normal);
    // Checked before any note about the zone, so that bad input is one line; the zone changes
    // what a time means, not whether it reads.
    if (options.at && *options.at != "now" &&
        !parseInstant(*options.at, Calendar(TimeZone::utc()))) {
        throw UsageError("cannot read the time '" + *options.at +
                         "' (now, today, tomorrow, 2025-10-07, 2025-10-07T21:30 in the device "
                         "zone, 2025-10-07T21:30:00Z or with an offset such as +02:00, or "
                         "@seconds since 1970; years -9999 to 9999)");
    }
    if (options.timeZone) device::setTimeZone(zoneNamed(*options.timeZone));
    if (options.locale) device::setLocaleIdentifier(*options.locale);
    l10n::useLanguage(device::localeIdentifier());
    device::setLocationService(locationService(options));
    if (commandPlace) {
        takeZoneOfNearestCity(options, commandPlace->latitude, commandPlace->longitude);
    }
    // Read in the zone settled above, which a place may have chosen. "now" leaves the clock
    // running, as a host that runs for days needs.
    if (options.at && *options.at != "now") {
        const auto instant = parseInstant(*options.at, Calendar(device::timeZone()));
        // Only a local time at the very end of the readable years fails here.
        if (!instant) throw UsageError("the time '" + *options.at + "' is out of range");
        device::fixNow(*instant);
    }
}

}  // namespace lunoval::cli
