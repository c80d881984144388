#pragma once

#include <optional>

#include "astro/moon_phase.hpp"
#include "platform/time_zone.hpp"
#include "timeline/moon_widget_data.hpp"
#include "timeline/widget_details.hpp"

namespace lunoval {

// In `zone` (the record's, or the device's when the record names none it knows); absent when the
// record's moment has no local date there.
std::optional<PhaseMonth> phaseMonth(const MoonWidgetData& record, const TimeZone& zone,
                                     const Solar::PhaseTable& table);

}  // namespace lunoval
