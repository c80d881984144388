#pragma once

#include <optional>

#include "astro/observer.hpp"
#include "platform/calendar.hpp"
#include "platform/date.hpp"
#include "timeline/moon_widget_data.hpp"
#include "timeline/widget_details.hpp"

namespace lunoval {

// For the record's place and moment; local days are counted in `zone` (the record's, or the
// device's when the record names none it knows).
ElevationDay elevationDay(const MoonWidgetData& record, const TimeZone& zone);

// A smooth made-up day for placeholders: 35·sin(π(h − 2)/12) + 15 degrees, h the UTC hour.
double placeholderAltitude(Date instant);
// The placeholder record's altitude of the moon, in degrees.
inline constexpr double kPlaceholderPresentAltitude = 35;
// The placeholder's present moment: on the chart day beginning at `dayStart`, where the
// made-up day sets the moon at the placeholder's altitude, so chart and figures agree.
Date placeholderPresentTime(Date dayStart);

inline constexpr int kRangeSamples = 96;
// Sample `index` (0 to 95) of the range search: every quarter hour of the local day of `day`.
// A skipped wall-clock time moves to the end of the gap; a repeated one takes its first
// occurrence.
std::optional<Date> rangeSampleInstant(const Calendar& calendar, Date day, int index);
// The altitude's extremes over the range samples of the local day of `day`.
AltitudeRange sampledRange(const Calendar& calendar, Date day, Solar::Observer place);

// The start of the local day holding moonrise, else moonset, else `currentTime`.
Date chartDayStart(const std::optional<Date>& moonrise, const std::optional<Date>& moonset,
                   Date currentTime, const Calendar& calendar);

}  // namespace lunoval
