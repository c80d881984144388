// The host app's "widgetData" document, decoded and then drawn into a record.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/location_services.hpp"
#include "timeline/moon_widget_data.hpp"
#include "timeline/widget_data_builder.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto now = lunoval::Date::fromTimeIntervalSince1970(1760000000);
    auto record =
        lunoval::decodeWidgetData(std::string_view(reinterpret_cast<const char*>(data), size), now);
    // As the widget reads it: a place off the globe is no saved place.
    if (record && lunoval::isOnTheGlobe({record->latitude, record->longitude})) {
        const lunoval::AstronomySources none{
            .phaseTable = [](int, int) { return std::vector<lunoval::MoonPhaseEvent>{}; },
            .nextPhase =
                [](lunoval::Date, const lunoval::TimeZone&) {
                    return std::optional<lunoval::NextPhase>{};
                },
            .eclipseInfo =
                [](lunoval::Date, const lunoval::TimeZone&, lunoval::Solar::Observer) {
                    return std::shared_ptr<const lunoval::EclipseEvent>{};
                }};
        lunoval::fill(*record, now, lunoval::SunTimes::include, lunoval::Solar::Tilt::at(now),
                      none);
    }
    return 0;
}
