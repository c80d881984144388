#include "platform/refresh_schedule.hpp"

#include <algorithm>

namespace lunoval::widgetkit {

namespace {

constexpr auto kReloadSpacing = std::chrono::seconds(1);

}  // namespace

RefreshSchedule RefreshSchedule::after(Clock::time_point start, Clock::time_point end,
                                       double budgetMinutes) {
    const auto budget = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(budgetMinutes * 60));
    return {.lastStart = start, .budgetEnd = end + budget, .reloadAt = std::nullopt};
}

void RefreshSchedule::requestReload(Clock::time_point now) {
    if (!reloadAt) reloadAt = std::max(now, lastStart + kReloadSpacing);
}

RefreshSchedule::Clock::time_point RefreshSchedule::due() const {
    return std::min(budgetEnd, reloadAt.value_or(budgetEnd));
}

}  // namespace lunoval::widgetkit
