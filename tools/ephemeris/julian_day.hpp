#pragma once

#include <date/date.h>
#include <chrono>

namespace lunoval::ephemeris {

// 1970-01-01 00:00 UTC.
inline constexpr double unixEpochJulianDay = 2440587.5;

// An instant on the UTC calendar, to the minute.
struct CalendarMinute {
    date::year_month_day date;
    std::chrono::hours hour{};
    std::chrono::minutes minute{};
};

// The calendar date holding the instant; the time scale is the caller's (TT or UTC).
date::year_month_day calendarDate(double julianDay);

// Rounds to the nearest minute before splitting, so 23:59:40 on 31 December becomes
// 00:00 on 1 January of the next year.
CalendarMinute nearestCalendarMinute(double julianDay);

}  // namespace lunoval::ephemeris
