#include "platform/calendar.hpp"

#include <date/date.h>
#include <date/tz.h>
#include <cmath>

#include "platform/instant_range.hpp"

namespace lunoval {

namespace {

using std::chrono::seconds;

// Wall-clock fields are accepted only in a range the calendar can roll over without overflow.
constexpr long long kMaxField = 1'000'000;

std::optional<date::local_seconds> localSeconds(const TimeZone& zone, Date instant) {
    const auto whole = wholeSeconds(instant);
    if (!whole) return std::nullopt;
    return date::local_seconds{whole->time_since_epoch() + zone.sysInfo(*whole).offset};
}

Date resolve(const TimeZone& zone, date::local_seconds local) {
    const auto info = zone.localInfo(local);
    date::sys_seconds sys;
    switch (info.result) {
        case date::local_info::nonexistent:
            sys = info.second.begin;
            break;
        case date::local_info::unique:
        case date::local_info::ambiguous:
            sys = date::sys_seconds{local.time_since_epoch() - info.first.offset};
            break;
    }
    return Date::fromTimeIntervalSince1970(static_cast<double>(sys.time_since_epoch().count()));
}

std::optional<date::local_days> localDay(const TimeZone& zone, Date instant) {
    const auto local = localSeconds(zone, instant);
    if (!local) return std::nullopt;
    return date::floor<date::days>(*local);
}

}  // namespace

std::optional<DateComponents> Calendar::components(Date instant) const {
    const auto local = localSeconds(zone_, instant);
    if (!local) return std::nullopt;
    const auto day = date::floor<date::days>(*local);
    const date::year_month_day ymd{day};
    const date::hh_mm_ss<seconds> time{*local - day};
    return DateComponents{
        .year = static_cast<int>(ymd.year()),
        .month = static_cast<int>(static_cast<unsigned>(ymd.month())),
        .day = static_cast<int>(static_cast<unsigned>(ymd.day())),
        .hour = static_cast<int>(time.hours().count()),
        .minute = static_cast<int>(time.minutes().count()),
        .second = static_cast<int>(time.seconds().count()),
        .weekday = static_cast<int>(date::weekday{day}.c_encoding()) + 1,
    };
}

std::optional<Date> Calendar::date(long long year, long long month, long long day, long long hour,
                                   long long minute, long long second) const {
    for (const long long field : {year, month, day, hour, minute, second}) {
        if (std::llabs(field) > kMaxField) return std::nullopt;
    }
    const long long monthIndex = year * 12 + (month - 1);
    const auto normalizedYear = static_cast<int>(std::floor(static_cast<double>(monthIndex) / 12));
    const auto normalizedMonth = static_cast<unsigned>(monthIndex - normalizedYear * 12LL + 1);
    const date::local_days firstOfMonth{date::year{normalizedYear} / date::month{normalizedMonth} /
                                        1};
    const auto local = firstOfMonth + date::days{day - 1} + std::chrono::hours{hour} +
                       std::chrono::minutes{minute} + seconds{second};
    const Date result = resolve(zone_, local);
    if (!wholeSeconds(result)) return std::nullopt;
    return result;
}

std::optional<Date> Calendar::startOfDay(Date instant) const {
    const auto day = localDay(zone_, instant);
    if (!day) return std::nullopt;
    return resolve(zone_, date::local_seconds{*day});
}

std::optional<Date> Calendar::dateBySettingTime(int hour, int minute, int second,
                                                Date instant) const {
    const auto day = localDay(zone_, instant);
    if (!day) return std::nullopt;
    return resolve(zone_, date::local_seconds{*day} + std::chrono::hours{hour} +
                              std::chrono::minutes{minute} + seconds{second});
}

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): the test is symmetric
bool Calendar::isDateInSameDay(Date a, Date b) const {
    const auto dayA = localDay(zone_, a);
    return dayA && dayA == localDay(zone_, b);
}

std::optional<Date> Calendar::addingDays(int days, Date instant) const {
    const auto local = localSeconds(zone_, instant);
    if (!local || std::abs(days) > kMaxField) return std::nullopt;
    const double fraction =
        instant.timeIntervalSince1970() - std::floor(instant.timeIntervalSince1970());
    const Date result = resolve(zone_, *local + date::days{days}).addingTimeInterval(fraction);
    if (!wholeSeconds(result)) return std::nullopt;
    return result;
}

int Calendar::daysInMonth(int year, int month) {
    const date::year_month_day_last last{date::year{year} /
                                         date::month{static_cast<unsigned>(month)} / date::last};
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

}  // namespace lunoval
