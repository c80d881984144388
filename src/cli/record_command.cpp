#include "cli/record_command.hpp"

#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "cli/device.hpp"
#include "cli/device_options.hpp"
#include "locations/widget_location_cache.hpp"
#include "platform/date_formatter.hpp"
#include "platform/localization.hpp"
#include "platform/log.hpp"
#include "timeline/make_widget_data.hpp"
#include "timeline/widget_data_builder.hpp"

namespace lunoval::cli {

namespace {

std::string fixed(double value, int decimals) {
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    return buffer.data();
}

std::string timeOrDash(const DateFormatter& formatter, const std::optional<Date>& instant) {
    return instant ? formatter.shortTime(*instant) : "--:--";
}

std::string phaseLine(const Solar::SimpleMoonPhase& phase) {
    return l10n::localized(phase.phaseName.c_str()) + " · " + fixed(phase.illumination * 100, 1) +
           "% lit · phase angle " + fixed(phase.phaseAngle, 1) + "° · tilt " +
           fixed(phase.tiltAngle, 1) + "°";
}

void printSummary(const MoonWidgetData& record) {
    const DateFormatter formatter{device::localeIdentifier(), device::timeZone()};
    std::cout << "Place       " << fixed(record.latitude, 4) << ", " << fixed(record.longitude, 4)
              << " · " << record.timezone << "\n"
              << "Time        " << formatter.pattern(record.selectedTime, "EEE d MMM yyyy") << " "
              << formatter.shortTime(record.selectedTime) << "\n"
              << "Sun         rise " << timeOrDash(formatter, record.sunrise) << " · set "
              << timeOrDash(formatter, record.sunset) << "\n"
              << "Moon        rise " << timeOrDash(formatter, record.moonrise) << " · set "
              << timeOrDash(formatter, record.moonset) << "\n";
    if (record.moonAltitude && record.moonAzimuth) {
        std::cout << "Moon now    altitude " << fixed(*record.moonAltitude, 1) << "° · azimuth "
                  << fixed(*record.moonAzimuth, 1) << "°\n";
    }
    if (record.currentMoonPhase) {
        std::cout << "Phase       " << phaseLine(*record.currentMoonPhase) << "\n";
    }
    if (record.nextMoonPhase && record.nextPhaseTime) {
        std::cout << "Next phase  " << l10n::localized(record.nextMoonPhase->phaseName.c_str())
                  << " · " << *record.nextPhaseTime << "\n";
    }
    if (record.eclipseInfo) {
        std::cout << "Eclipse     " << record.eclipseInfo->title
                  << (record.eclipseInfo->isVisible ? " · visible here" : " · not visible here")
                  << "\n";
    }
}

MoonWidgetData placeToRecord(const RecordOptions& options) {
    if (options.latitude && options.longitude) {
        return {.latitude = *options.latitude,
                .longitude = *options.longitude,
                .timezone = device::timeZone().identifier()};
    }
    const auto service = device::locationService();
    if (service.kind == LocationService::Kind::fixed) {
        return {.latitude = service.fix.latitude,
                .longitude = service.fix.longitude,
                .timezone = device::timeZone().identifier()};
    }
    // The saved place keeps its own zone, as in the widget.
    if (auto saved = loadFromAppGroup(appGroupDefaults(), device::now())) return std::move(*saved);
    throw UsageError(
        "record needs a place: --lat and --lng, --location (LAT,LNG or a city), or a saved place "
        "(lunoval locations add CITY, then lunoval locations select INDEX)");
}

}  // namespace

CLI::App* addRecordCommand(CLI::App& app, RecordOptions& options) {
    auto* command = app.add_subcommand("record", "Fill one widget record for a place and print it");
    addCoordinateOptions(*command, options.latitude, options.longitude);
    command->add_flag("--json", options.json, "Print one JSON object with every field");
    return command;
}

std::optional<Location> recordPlace(const RecordOptions& options) {
    if (!options.latitude || !options.longitude) return std::nullopt;
    return Location{.latitude = *options.latitude, .longitude = *options.longitude};
}

int runRecord(const RecordOptions& options) {
    if (options.json) log::toStandardError(true);
    auto record = placeToRecord(options);
    const Date now = device::now();
    record.selectedTime = now;
    fill(record, now, SunTimes::include, Solar::Tilt::at(now),
         AstronomySources::shared(device::timeZone()));
    if (options.json) {
        std::cout << recordJson(record).dump() << "\n";
    } else {
        printSummary(record);
    }
    return 0;
}

}  // namespace lunoval::cli
