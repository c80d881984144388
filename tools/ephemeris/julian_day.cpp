#include "ephemeris/julian_day.hpp"

namespace lunoval::ephemeris {

namespace {

constexpr double secondsPerDay = 86400.0;

std::chrono::duration<double> sinceUnixEpoch(double julianDay) {
    return std::chrono::duration<double>((julianDay - unixEpochJulianDay) * secondsPerDay);
}

}  // namespace

date::year_month_day calendarDate(double julianDay) {
    return {date::sys_days(std::chrono::floor<date::days>(sinceUnixEpoch(julianDay)))};
}

CalendarMinute nearestCalendarMinute(double julianDay) {
    const auto instant = date::sys_time<std::chrono::minutes>(
        std::chrono::round<std::chrono::minutes>(sinceUnixEpoch(julianDay)));
    const auto day = date::floor<date::days>(instant);
    const date::hh_mm_ss<std::chrono::minutes> time(instant - day);
    return {date::year_month_day(day), time.hours(), time.minutes()};
}

}  // namespace lunoval::ephemeris
