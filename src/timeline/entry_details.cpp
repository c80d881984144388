#include "timeline/entry_details.hpp"

#include "timeline/elevation_day.hpp"
#include "timeline/phase_month.hpp"

namespace lunoval {

MoonWidgetEntry withDetails(MoonWidgetEntry entry, const RequestContext& context) {
    auto& details = entry.details;
    details.format.locale = context.locale;
    details.format.zone = context.deviceZone;
    if (!entry.widgetData) return entry;
    const auto& record = *entry.widgetData;
    // A record whose zone is unknown is drawn in the device's.
    details.format.zone = TimeZone::named(record.timezone).value_or(context.deviceZone);
    details.month = phaseMonth(record, details.format.zone, context.sources.phaseTable);
    details.elevation = elevationDay(record, details.format.zone);
    return entry;
}

}  // namespace lunoval
