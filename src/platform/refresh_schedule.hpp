#pragma once

#include <chrono>
#include <optional>

namespace lunoval::widgetkit {

// When a host asks its provider again. Every timeline leaves that to the host (reload policy at
// end), so it asks after its refresh budget, or at once when a reload request comes, though never
// twice within a second, so a burst of requests makes one refresh.
struct RefreshSchedule {
    using Clock = std::chrono::steady_clock;

    Clock::time_point lastStart;
    Clock::time_point budgetEnd;
    std::optional<Clock::time_point> reloadAt;

    // After a refresh that began at `start` and ended at `end`, with a budget in minutes.
    static RefreshSchedule after(Clock::time_point start, Clock::time_point end,
                                 double budgetMinutes);
    // A later request in the same wait changes nothing.
    void requestReload(Clock::time_point now);
    [[nodiscard]] Clock::time_point due() const;
    [[nodiscard]] bool dueToReload() const { return reloadAt && due() == *reloadAt; }
};

}  // namespace lunoval::widgetkit
