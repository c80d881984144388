#include "timeline/moon_widget_data.hpp"

#include <nlohmann/json.hpp>

namespace lunoval {

namespace {

using json = nlohmann::ordered_json;

Solar::SimpleMoonPhase samplePhase(double illumination, double phaseAngle, Solar::PhaseType type,
                                   double tiltAngle) {
    return {.illumination = illumination,
            .phaseAngle = phaseAngle,
            .phaseName = std::string(Solar::rawValue(type)),
            .phaseType = type,
            .tiltAngle = tiltAngle};
}

template <typename T, typename Convert>
json optionalJson(const std::optional<T>& value, Convert convert) {
    return value ? json(convert(*value)) : json(nullptr);
}

json instantJson(const std::optional<Date>& instant) {
    return optionalJson(instant, [](Date date) { return date.timeIntervalSince1970(); });
}

json phaseJson(const std::optional<Solar::SimpleMoonPhase>& phase) {
    return optionalJson(phase, [](const Solar::SimpleMoonPhase& p) {
        return json{{"illumination", p.illumination},
                    {"phaseAngle", p.phaseAngle},
                    {"phaseName", p.phaseName},
                    {"phaseType", Solar::caseName(p.phaseType)},
                    {"tiltAngle", p.tiltAngle}};
    });
}

json eclipseJson(const std::shared_ptr<const EclipseEvent>& eclipse) {
    if (!eclipse) return nullptr;
    return json{{"key", eclipse->key},
                {"title", eclipse->title},
                {"datetime", eclipse->datetime.timeIntervalSince1970()},
                {"isLunarEvent", eclipse->isLunarEvent},
                {"isVisible", static_cast<bool>(eclipse->isVisible)}};
}

}  // namespace

MoonWidgetData MoonWidgetData::placeholder(Date now) {
    using enum Solar::PhaseType;
    return {
        .latitude = 37.7749,
        .longitude = -122.4194,
        .timezone = "America/Los_Angeles",
        .locationName = "San Francisco",
        .isPlaceholder = true,
        .selectedTime = now,
        .sunrise = Date::fromTimeIntervalSince1970(1760022000),
        .sunset = Date::fromTimeIntervalSince1970(1760065800),
        .moonrise = Date::fromTimeIntervalSince1970(1760074200),
        .moonset = Date::fromTimeIntervalSince1970(1760033700),
        .moonAzimuth = 225.0,
        .moonAltitude = 35.0,
        .currentMoonPhase = samplePhase(0.75, 110.0, waxingGibbous, 15.0),
        .nextMoonPhase = samplePhase(1.0, 180.0, fullMoon, 0.0),
        // Lower case, unlike the localised texts: the sample keeps it so on purpose.
        .nextPhaseTime = "in 7 days",
    };
}

MoonWidgetData MoonWidgetData::permissionNeeded(std::string deviceTimeZone, Date now) {
    return {.timezone = std::move(deviceTimeZone),
            .needsLocationPermission = true,
            .selectedTime = now};
}

std::string encodeWidgetData(const MoonWidgetData& record) {
    json document{{"latitude", record.latitude},
                  {"longitude", record.longitude},
                  {"timezone", record.timezone}};
    if (record.locationName) document["locationName"] = *record.locationName;
    return document.dump();
}

std::optional<MoonWidgetData> decodeWidgetData(std::string_view text, Date now) {
    const auto document = nlohmann::json::parse(text, nullptr, false);
    if (!document.is_object()) return std::nullopt;
    const auto latitude = document.find("latitude");
    const auto longitude = document.find("longitude");
    const auto timezone = document.find("timezone");
    const auto name = document.find("locationName");
    const auto end = document.end();
    if (latitude == end || !latitude->is_number() || longitude == end || !longitude->is_number() ||
        timezone == end || !timezone->is_string()) {
        return std::nullopt;
    }
    MoonWidgetData record{.latitude = latitude->get<double>(),
                          .longitude = longitude->get<double>(),
                          .timezone = timezone->get<std::string>(),
                          .selectedTime = now};
    if (name != end && !name->is_null()) {
        if (!name->is_string()) return std::nullopt;
        record.locationName = name->get<std::string>();
    }
    return record;
}

json recordJson(const MoonWidgetData& record) {
    return json{
        {"latitude", record.latitude},
        {"longitude", record.longitude},
        {"timezone", record.timezone},
        {"locationName", optionalJson(record.locationName, [](const auto& s) { return s; })},
        {"isPlaceholder", record.isPlaceholder},
        {"needsLocationPermission", record.needsLocationPermission},
        {"selectedTime", record.selectedTime.timeIntervalSince1970()},
        {"sunrise", instantJson(record.sunrise)},
        {"sunset", instantJson(record.sunset)},
        {"moonrise", instantJson(record.moonrise)},
        {"moonset", instantJson(record.moonset)},
        {"moonAzimuth", optionalJson(record.moonAzimuth, [](double v) { return v; })},
        {"moonAltitude", optionalJson(record.moonAltitude, [](double v) { return v; })},
        {"currentMoonPhase", phaseJson(record.currentMoonPhase)},
        {"nextMoonPhase", phaseJson(record.nextMoonPhase)},
        {"nextPhaseTime", optionalJson(record.nextPhaseTime, [](const auto& s) { return s; })},
        {"eclipseInfo", eclipseJson(record.eclipseInfo)},
    };
}

}  // namespace lunoval
