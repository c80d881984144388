#pragma once

#include <chrono>
#include <compare>

namespace lunoval {

// An absolute instant, kept as double seconds since 1970-01-01 00:00 UTC so that the
// astronomy reads back exactly the number it was given.
struct Date {
    std::chrono::duration<double> sinceEpoch{};

    static constexpr Date fromTimeIntervalSince1970(double seconds) {
        return Date{std::chrono::duration<double>(seconds)};
    }
    [[nodiscard]] constexpr double timeIntervalSince1970() const { return sinceEpoch.count(); }
    [[nodiscard]] constexpr Date addingTimeInterval(double seconds) const {
        return fromTimeIntervalSince1970(timeIntervalSince1970() + seconds);
    }
    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the comparison's 0 for a pointer.
    friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace lunoval
