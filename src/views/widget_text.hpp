#pragma once

#include <string>

#include "astro/phase_type.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// The texts the widgets derive from a record, shared so every widget says things alike.

// The zone a record's `timezone` names, or the device's when the name is unknown.
TimeZone placeZone(const std::string& timezone);

// The integer part of the lit percentage: 0.999 is 99, never rounded up to 100.
int litPercent(double illumination);
// "42% illuminated" and "42% lit", the suffix localized.
std::string illuminatedText(double illumination);
std::string litText(double illumination);
// The altitude to the nearest degree, halves away from zero: -0.5 is "-1°".
std::string elevationText(double altitudeDegrees);
// The phase's name in the device language.
std::string phaseNameText(const Solar::SimpleMoonPhase& phase);

// The locale's short time ("9:41 PM") in the place's zone.
std::string shortTimeText(Date date, const std::string& timezone);
// The month ("MAR", always upper case) and the day of month ("7") in the place's zone.
std::string monthText(Date date, const std::string& timezone);
std::string dayText(Date date, const std::string& timezone);

}  // namespace lunoval
