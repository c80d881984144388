#pragma once

#include <string>

#include "astro/phase_type.hpp"
#include "platform/date.hpp"
#include "timeline/widget_details.hpp"

namespace lunoval {

// The texts the widgets derive from a record, shared so every widget says things alike.

// The integer part of the lit percentage: 0.999 is 99, never rounded up to 100.
int litPercent(double illumination);
// "42% illuminated" and "42% lit", the suffix localized.
std::string illuminatedText(double illumination);
std::string litText(double illumination);
// The altitude to the nearest degree, halves away from zero: -0.5 is "-1°".
std::string elevationText(double altitudeDegrees);
// The phase's name in the device language.
std::string phaseNameText(const Solar::SimpleMoonPhase& phase);

// The locale's short time ("9:41 PM") in the entry's zone.
std::string shortTimeText(Date date, const LocalFormat& format);
// The month ("MAR", always upper case) and the day of month ("7") in the entry's zone.
std::string monthText(Date date, const LocalFormat& format);
std::string dayText(Date date, const LocalFormat& format);

}  // namespace lunoval
