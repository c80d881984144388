#pragma once

#include "platform/calendar.hpp"

namespace lunoval::testing {

inline Date utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return *Calendar(TimeZone::utc()).date(year, month, day, hour, minute, second);
}

inline TimeZone zone(const char* identifier) {
    return *TimeZone::named(identifier);
}

}  // namespace lunoval::testing
