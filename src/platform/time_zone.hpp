#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.hpp"

namespace date {
class time_zone;
}

namespace lunoval {

// A named zone of the system's time-zone database.
class TimeZone {
  public:
    // Absent when the database has no zone of that name.
    static std::optional<TimeZone> named(std::string_view identifier);
    static TimeZone utc();

    [[nodiscard]] const std::string& identifier() const { return identifier_; }
    // Absent for an instant the database cannot place (not finite, or beyond its range).
    [[nodiscard]] std::optional<std::chrono::seconds> offsetFromUTC(Date date) const;
    [[nodiscard]] const date::time_zone& zone() const { return *zone_; }

    friend bool operator==(const TimeZone& a, const TimeZone& b) {
        return a.identifier_ == b.identifier_;
    }

  private:
    TimeZone(const date::time_zone* zone, std::string identifier)
        : zone_(zone), identifier_(std::move(identifier)) {}

    const date::time_zone* zone_;
    std::string identifier_;
};

// The zone the environment names: TZ, else /etc/localtime, else UTC.
TimeZone environmentTimeZone();

}  // namespace lunoval
