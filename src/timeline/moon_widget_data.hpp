#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "astro/phase_type.hpp"
#include "eclipse/eclipse_event.hpp"
#include "platform/date.hpp"
#include "timeline/configuration_app_intent.hpp"
#include "timeline/widget_details.hpp"

namespace lunoval {

// Everything one widget entry shows for one place and one moment.
struct MoonWidgetData {
    double latitude = 0;
    double longitude = 0;
    std::string timezone;
    std::optional<std::string> locationName;
    bool isPlaceholder = false;
    bool needsLocationPermission = false;
    Date selectedTime;
    std::optional<Date> sunrise;
    std::optional<Date> sunset;
    std::optional<Date> moonrise;
    std::optional<Date> moonset;
    std::optional<double> moonAzimuth;
    std::optional<double> moonAltitude;
    std::optional<Solar::SimpleMoonPhase> currentMoonPhase;
    std::optional<Solar::SimpleMoonPhase> nextMoonPhase;
    std::optional<std::string> nextPhaseTime;
    std::shared_ptr<const EclipseEvent> eclipseInfo;

    // Sample data for placeholders and previews.
    static MoonWidgetData placeholder(Date now);
    // The record that asks the user for location permission.
    static MoonWidgetData permissionNeeded(std::string deviceTimeZone, Date now);
};

struct MoonWidgetEntry {
    Date date;
    std::optional<MoonWidgetData> widgetData;
    ConfigurationAppIntent configuration;
    WidgetDetails details;
};

// The form shared with the host app: latitude, longitude, timezone and locationName only.
std::string encodeWidgetData(const MoonWidgetData& record);
// Fields the form does not carry take their defaults, `selectedTime` being `now`; absent when
// the document is not valid or lacks a required key.
std::optional<MoonWidgetData> decodeWidgetData(std::string_view text, Date now);

// Every field by name, for scripts: instants as seconds since 1970, absent fields as null.
nlohmann::ordered_json recordJson(const MoonWidgetData& record);

}  // namespace lunoval
