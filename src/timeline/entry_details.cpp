#include "timeline/entry_details.hpp"

#include "timeline/elevation_day.hpp"
#include "timeline/phase_month.hpp"

namespace lunoval {

LocalFormat localFormat(const std::optional<MoonWidgetData>& record,
                        const RequestContext& context) {
    const auto named = record ? TimeZone::named(record->timezone) : std::nullopt;
    return {.locale = context.locale, .zone = named.value_or(context.deviceZone)};
}

MoonWidgetEntry withDetails(MoonWidgetEntry entry, const RequestContext& context) {
    auto& details = entry.details;
    details.format = localFormat(entry.widgetData, context);
    if (!entry.widgetData) return entry;
    const auto& record = *entry.widgetData;
    details.month = phaseMonth(record, details.format.zone, context.sources.phaseTable);
    details.elevation = elevationDay(record, details.format.zone);
    return entry;
}

}  // namespace lunoval
