#pragma once

#include <optional>

#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// Wall-clock fields of an instant in one zone. `weekday` counts 1 (Sunday) to 7 (Saturday).
struct DateComponents {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int weekday = 0;
};

// The Gregorian calendar in one time zone. Local times that a zone skips resolve to the first
// instant after the gap; local times it repeats resolve to their first occurrence.
class Calendar {
  public:
    explicit Calendar(TimeZone zone) : zone_(std::move(zone)) {}

    [[nodiscard]] const TimeZone& timeZone() const { return zone_; }

    [[nodiscard]] std::optional<DateComponents> components(Date instant) const;
    // Out-of-range fields roll over as on a wall calendar (day 32 of January is 1 February).
    [[nodiscard]] std::optional<Date> date(long long year, long long month, long long day,
                                           long long hour = 0, long long minute = 0,
                                           long long second = 0) const;
    [[nodiscard]] std::optional<Date> startOfDay(Date instant) const;
    // The given wall-clock time on the local day of `instant`.
    [[nodiscard]] std::optional<Date> dateBySettingTime(int hour, int minute, int second,
                                                        Date instant) const;
    [[nodiscard]] bool isDateInSameDay(Date a, Date b) const;
    // The same wall-clock time `days` local days later.
    [[nodiscard]] std::optional<Date> addingDays(int days, Date instant) const;

    static int daysInMonth(int year, int month);

  private:
    TimeZone zone_;
};

}  // namespace lunoval
