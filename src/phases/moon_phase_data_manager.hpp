#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <shared_mutex>
#include <vector>

#include "phases/moon_phase_event.hpp"
#include "platform/bundle.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// Month number (as written in the file, unchecked) to that month's events in file order.
using PhaseYear = std::map<std::int64_t, std::vector<MoonPhaseEvent>>;

struct NextPhase {
    MoonPhaseEvent event;
    // The event's local day of the month minus the query's local day of the month.
    std::int64_t daysUntil = 0;
};

// Reads each year's table of principal phases at most once per process. A year whose file is
// missing or unreadable is searched for again on every call.
class MoonPhaseDataManager {
  public:
    static MoonPhaseDataManager& shared();

    explicit MoonPhaseDataManager(BundleLocator locator);

    // Null when the year's file cannot be found or read.
    std::shared_ptr<const PhaseYear> loadYear(int year);
    // Empty when the year cannot be loaded or has no such month.
    std::vector<MoonPhaseEvent> events(int year, int month);
    // The first event of the current local month whose local day is not yet past; only that
    // month's table is consulted.
    std::optional<NextPhase> nextPhase(Date date, const TimeZone& zone);

    // The instant of a tabulated event (UTC wall-clock time).
    static std::optional<Date> eventDate(std::int64_t year, std::int64_t month, std::int64_t day,
                                         std::int64_t hour, std::int64_t minute);

  private:
    std::shared_ptr<const PhaseYear> cached(int year) const;
    std::optional<Bundle> bundleWithYear(int year) const;

    BundleLocator locator_;
    mutable std::shared_mutex cacheMutex_;
    std::map<int, std::shared_ptr<const PhaseYear>> cache_;
};

}  // namespace lunoval
