#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/localization.hpp"
#include "timeline/entry_details.hpp"

namespace lunoval::testing {

// An entry as a widget host draws it: with its details, texts in `locale`, and a record whose
// zone is unknown read in `deviceZone`.
inline MoonWidgetEntry drawnEntry(Date date, std::optional<MoonWidgetData> record,
                                  const std::string& locale = "en_US",
                                  const TimeZone& deviceZone = TimeZone::utc()) {
    l10n::useLanguage(locale);
    const RequestContext context{.clock = fixedClock(date),
                                 .deviceZone = deviceZone,
                                 .locale = locale,
                                 .sources = AstronomySources::shared(deviceZone)};
    return withDetails({.date = date, .widgetData = std::move(record)}, context);
}

}  // namespace lunoval::testing
