#pragma once

#include <date/tz.h>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.hpp"

namespace lunoval {

class ZoneRule;

// A named zone of the system's time-zone database.
class TimeZone {
  public:
    // Absent when the database has no zone of that name.
    static std::optional<TimeZone> named(std::string_view identifier);
    static TimeZone utc();

    [[nodiscard]] const std::string& identifier() const { return identifier_; }
    // Absent for an instant the database cannot place (not finite, or beyond its range).
    [[nodiscard]] std::optional<std::chrono::seconds> offsetFromUTC(Date date) const;
    // The zone's offset and abbreviation at an instant, and the meaning of a wall-clock time.
    [[nodiscard]] date::sys_info sysInfo(date::sys_seconds instant) const;
    [[nodiscard]] date::local_info localInfo(date::local_seconds local) const;

    friend bool operator==(const TimeZone& a, const TimeZone& b) {
        return a.identifier_ == b.identifier_;
    }

  private:
    TimeZone(const date::time_zone* zone, std::string identifier,
             std::shared_ptr<const ZoneRule> futureRule)
        : zone_(zone), identifier_(std::move(identifier)), futureRule_(std::move(futureRule)) {}

    const date::time_zone* zone_;
    std::string identifier_;
    // Applies after the last change the database lists.
    std::shared_ptr<const ZoneRule> futureRule_;
};

struct EnvironmentZone {
    TimeZone zone;
    // One line for the user when TZ names no zone.
    std::optional<std::string> warning;
};

// The zone the environment names: TZ, else /etc/localtime, else UTC. A TZ that names no zone
// of the database is UTC, as the C library reads it, so that our times agree with other
// programs'.
EnvironmentZone environmentTimeZone();

}  // namespace lunoval
