#include "timeline/phase_month.hpp"

#include <map>

#include "platform/calendar.hpp"

namespace lunoval {

std::optional<PhaseMonth> phaseMonth(const MoonWidgetData& record, const TimeZone& zone,
                                     const Solar::PhaseTable& table) {
    const Calendar calendar(zone);
    const auto reference = calendar.components(record.selectedTime);
    if (!reference) return std::nullopt;
    PhaseMonth month{.year = reference->year, .month = reference->month, .today = reference->day};

    std::map<std::int64_t, MoonPhaseEvent::PhaseType> principal;
    for (const auto& event : table(month.year, month.month)) {
        principal.try_emplace(event.day, event.phase);
    }
    const auto first = calendar.date(month.year, month.month, 1, 12);
    const auto firstDay = first ? calendar.components(*first) : std::nullopt;
    month.leadingDays = firstDay ? firstDay->weekday - 1 : 0;

    const Solar::Observer place{record.latitude, record.longitude};
    const int days = Calendar::daysInMonth(month.year, month.month);
    for (int day = 1; day <= days; ++day) {
        MonthDay cell{.day = day};
        if (const auto event = principal.find(day); event != principal.end()) {
            cell.principalPhase = event->second;
        } else if (const auto noon = calendar.date(month.year, month.month, day, 12)) {
            cell.phase = Solar::moonPhase(*noon, zone, Solar::Tilt::none(), place, table);
        }
        month.days.push_back(cell);
    }
    return month;
}

}  // namespace lunoval
