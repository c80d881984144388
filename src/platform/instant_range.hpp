#pragma once

#include <chrono>
#include <cmath>
#include <optional>

#include "platform/date.hpp"

namespace lunoval {

// The calendar covers roughly years -26000 to 30000; instants beyond that, and values that
// are not numbers, have no calendar form.
inline constexpr double kMaxCalendarSeconds = 9.0e11;

// The whole second that holds the instant, or absent when the calendar cannot place it.
inline std::optional<std::chrono::sys_seconds> wholeSeconds(Date date) {
    const double t = date.timeIntervalSince1970();
    if (!std::isfinite(t) || std::fabs(t) > kMaxCalendarSeconds) return std::nullopt;
    return std::chrono::sys_seconds(std::chrono::seconds(static_cast<long long>(std::floor(t))));
}

}  // namespace lunoval
