#pragma once

#include <optional>
#include <string>
#include <vector>

#include "timeline/moon_widget_data.hpp"

namespace lunoval {

// What the tray and the status bar show of one record, in the entry's language and zone, as the
// widgets write it.
struct MoonSummary {
    std::string symbol;     // the phase as a moon emoji
    std::string phaseName;  // localised, such as "Waxing Gibbous"
    std::string caseName;   // such as "waxingGibbous", for style sheets
    int litPercent = 0;
    // The next principal phase, moon and sun rise and set, and a same-day eclipse, one a line.
    std::vector<std::string> details;

    // "Waxing Gibbous · 78 %"
    [[nodiscard]] std::string title() const;
    friend bool operator==(const MoonSummary&, const MoonSummary&) = default;
};

// Absent for an entry without a record or a phase (the permission prompt).
std::optional<MoonSummary> moonSummary(const MoonWidgetEntry& entry);

}  // namespace lunoval
