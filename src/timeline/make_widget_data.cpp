#include "timeline/make_widget_data.hpp"

#include "platform/device.hpp"
#include "platform/log.hpp"
#include "platform/number_text.hpp"
#include "timeline/widget_data_builder.hpp"

namespace lunoval {

namespace {

std::string coordinates(double latitude, double longitude) {
    return doubleDescription(latitude) + ", " + doubleDescription(longitude);
}

}  // namespace

std::optional<MoonWidgetData> loadFromAppGroup(const UserDefaults& defaults) {
    const auto data = defaults.dataForKey("widgetData");
    if (!data) return std::nullopt;
    auto record = decodeWidgetData(*data, device::now());
    // The host app saves only places on the globe: anything else is a damaged document, read
    // as none rather than drawn as a sky for no place.
    if (record && !isOnTheGlobe({record->latitude, record->longitude})) return std::nullopt;
    return record;
}

std::optional<MoonWidgetData> makeWidgetData(std::optional<Location> location, bool authorized,
                                             const UserDefaults& defaults) {
    const Date now = device::now();
    if (location) {
        const auto zone = device::timeZone().identifier();
        log::line("📍 Widget: Using current location: " +
                  coordinates(location->latitude, location->longitude));
        log::line("   Using device timezone: " + zone);
        MoonWidgetData record{.latitude = location->latitude,
                              .longitude = location->longitude,
                              .timezone = zone,
                              .selectedTime = now};
        fill(record, now, true, now);
        return record;
    }
    if (!authorized) {
        log::line("⚠️ Widget: Not authorized for widget updates - user needs to approve");
        return MoonWidgetData::permissionNeeded(device::timeZone().identifier(), now);
    }
    log::line("ℹ️ Widget: Authorized but location not currently available");
    auto saved = loadFromAppGroup(defaults);
    if (!saved) return std::nullopt;
    // The saved place keeps its own zone; the tilt is taken at the moon's nearest transit.
    fill(*saved, now, true, std::nullopt);
    log::line("✅ Widget: Using app-saved location as fallback: " +
              coordinates(saved->latitude, saved->longitude));
    return saved;
}

}  // namespace lunoval
