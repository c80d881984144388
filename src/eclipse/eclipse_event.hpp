#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.hpp"

namespace lunoval {

// One catalogued eclipse.
struct EclipseEvent {
    std::string key;    // catalogue key such as "TLE"
    std::string title;  // localised display title of the key
    Date datetime;
    bool isLunarEvent = false;
    bool isVisible = true;

    // One eclipse is one key at one instant; title and visibility do not tell events apart.
    friend bool operator==(const EclipseEvent& a, const EclipseEvent& b) {
        return a.key == b.key && a.datetime == b.datetime;
    }
};

// The localised title of a catalogue key; absent for a key outside the vocabulary, which is
// case-sensitive.
std::optional<std::string> eclipseTitle(std::string_view key);

// The title and the instant in UTC, such as "Total Solar Eclipse on Apr 8, 2024, 6:17 PM (UTC)",
// in the device's locale.
std::string description(const EclipseEvent& event);

}  // namespace lunoval

template <>
struct std::hash<lunoval::EclipseEvent> {
    std::size_t operator()(const lunoval::EclipseEvent& event) const noexcept;
};
