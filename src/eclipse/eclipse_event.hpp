#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.hpp"

namespace lunoval {

// A bool that one thread may overwrite while others read it. Lookups for different places set
// the visibility of the same catalogued event; the last write wins, as with a plain field, but
// the overlap is not a data race.
class SharedFlag {
  public:
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): reads as a bool
    SharedFlag(bool value = false) : value_(value) {}
    SharedFlag(const SharedFlag& other) : value_(other) {}
    SharedFlag& operator=(const SharedFlag& other) { return *this = static_cast<bool>(other); }
    SharedFlag& operator=(bool value) {
        value_.store(value, std::memory_order_relaxed);
        return *this;
    }
    ~SharedFlag() = default;
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): reads as a bool
    operator bool() const { return value_.load(std::memory_order_relaxed); }

  private:
    std::atomic<bool> value_;
};

// One catalogued eclipse.
struct EclipseEvent {
    std::string key;    // catalogue key such as "TLE"
    std::string title;  // localised display title of the key
    Date datetime;
    bool isLunarEvent = false;
    SharedFlag isVisible = true;

    // One eclipse is one key at one instant; title and visibility do not tell events apart.
    friend bool operator==(const EclipseEvent& a, const EclipseEvent& b) {
        return a.key == b.key && a.datetime == b.datetime;
    }
};

// The localised title of a catalogue key; absent for a key outside the vocabulary, which is
// case-sensitive.
std::optional<std::string> eclipseTitle(std::string_view key);

// The title and the instant in UTC, such as "Total Solar Eclipse on Apr 8, 2024, 6:17 PM (UTC)",
// in the device's `locale`.
std::string description(const EclipseEvent& event, const std::string& locale);

}  // namespace lunoval

template <>
struct std::hash<lunoval::EclipseEvent> {
    std::size_t operator()(const lunoval::EclipseEvent& event) const noexcept;
};
