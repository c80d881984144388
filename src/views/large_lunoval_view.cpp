#include "views/large_lunoval_view.hpp"

#include <array>
#include <limits>
#include <map>

#include "astro/moon_phase.hpp"
#include "phases/moon_phase_data_manager.hpp"
#include "platform/calendar.hpp"
#include "platform/date_formatter.hpp"
#include "platform/device.hpp"
#include "platform/localization.hpp"
#include "views/widget_blocks.hpp"
#include "views/widget_container.hpp"
#include "views/widget_text.hpp"

namespace lunoval {

using namespace ui;
using PrincipalPhase = MoonPhaseEvent::PhaseType;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kDaysPerWeek = 7;

// Sized so that six weeks fit the large widget with room to breathe.
constexpr double kMoonSize = 22;
constexpr double kPhaseSymbolSize = 10;
constexpr double kCellSpacing = 3;
constexpr double kRowSpacing = 2;
constexpr Font kTitleFont = Font::system(17, FontWeight::semibold);
constexpr Font kWeekdayFont = Font::system(11, FontWeight::semibold);
constexpr double kDayFontSize = 12;

Color cyan() {
    return systemColor(SystemColor::cyan, ColorScheme::dark);
}

const char* phaseSymbol(PrincipalPhase phase) {
    switch (phase) {
        case PrincipalPhase::newMoon:
            return "moonphase.new.moon";
        case PrincipalPhase::firstQuarter:
            return "moonphase.first.quarter";
        case PrincipalPhase::fullMoon:
            return "moonphase.full.moon";
        case PrincipalPhase::lastQuarter:
            return "moonphase.last.quarter";
    }
    return "";
}

std::array<std::string, kDaysPerWeek> weekdayInitials() {
    return {
        // TRANSLATORS: Sunday abbreviation
        l10n::localized("S"),
        // TRANSLATORS: Monday abbreviation
        l10n::localized("M"),
        // TRANSLATORS: Tuesday abbreviation
        l10n::localized("T"),
        // TRANSLATORS: Wednesday abbreviation
        l10n::localized("W"),
        // TRANSLATORS: Thursday abbreviation
        l10n::localized("Th"),
        // TRANSLATORS: Friday abbreviation
        l10n::localized("F"),
        // TRANSLATORS: Saturday abbreviation
        l10n::localized("Sa"),
    };
}

// One of the seven equal columns.
View column(const View& content) {
    return content.frame(FlexibleFrame{.maxWidth = kInfinity});
}

View row(std::vector<View> cells) {
    for (auto& cell : cells) cell = column(cell);
    return HStack(VerticalAlignment::center, 0, std::move(cells));
}

// The month of the record's moment, in the place's zone.
class MonthGrid {
  public:
    MonthGrid(const MoonWidgetData& data, DateComponents reference, ColorScheme scheme)
        : latitude_(data.latitude),
          longitude_(data.longitude),
          calendar_(placeZone(data.timezone)),
          reference_(reference),
          scheme_(scheme),
          events_(
              eventsByDay(MoonPhaseDataManager::shared().events(reference.year, reference.month))) {
    }

    [[nodiscard]] View body() const {
        std::vector<View> rows;
        const auto cells = dayCells();
        for (std::size_t start = 0; start < cells.size(); start += kDaysPerWeek) {
            rows.push_back(row({cells.begin() + static_cast<std::ptrdiff_t>(start),
                                cells.begin() + static_cast<std::ptrdiff_t>(start + kDaysPerWeek)})
                               .frame(FlexibleFrame{.maxHeight = kInfinity}));
        }
        return VStack(HorizontalAlignment::center, kRowSpacing, std::move(rows));
    }

  private:
    // The table's own day of month marks the day of a principal phase.
    static std::map<std::int64_t, PrincipalPhase> eventsByDay(
        const std::vector<MoonPhaseEvent>& events) {
        std::map<std::int64_t, PrincipalPhase> byDay;
        for (const auto& event : events) byDay.try_emplace(event.day, event.phase);
        return byDay;
    }

    // Empty cells before the 1st (from Sunday) and after the last day complete the weeks.
    [[nodiscard]] std::vector<View> dayCells() const {
        const auto first = calendar_.date(reference_.year, reference_.month, 1, 12);
        const auto firstDay = first ? calendar_.components(*first) : std::nullopt;
        const int leading = firstDay ? firstDay->weekday - 1 : 0;
        std::vector<View> cells(static_cast<std::size_t>(leading));
        const int days = Calendar::daysInMonth(reference_.year, reference_.month);
        for (int day = 1; day <= days; ++day) cells.push_back(dayCell(day));
        cells.resize((cells.size() + kDaysPerWeek - 1) / kDaysPerWeek * kDaysPerWeek);
        return cells;
    }

    [[nodiscard]] View dayCell(int day) const {
        const bool isToday = day == reference_.day;
        const auto number =
            Text(std::to_string(day))
                .font(Font::system(kDayFontSize, isToday ? FontWeight::bold : FontWeight::medium))
                .color(isToday ? cyan() : Color::white().opacity(0.9));
        return VStack(HorizontalAlignment::center, kCellSpacing,
                      {number, dayMoon(day).frame(kMoonSize, kMoonSize)});
    }

    [[nodiscard]] View dayMoon(int day) const {
        if (const auto event = events_.find(day); event != events_.end()) {
            std::string name = phaseSymbol(event->second);
            if (scheme_ == ColorScheme::light) name += ".inverse";
            return View(Symbol(name).resizable().color(cyan()))
                .frame(kPhaseSymbolSize, kPhaseSymbolSize);
        }
        const auto phase = phaseOn(day);
        if (!phase) return {};
        return whiteMoonDisc(*phase, kMoonSize, false).body();
    }

    // Local noon stands for the whole day; the grid is too small for the moon's tilt.
    [[nodiscard]] std::optional<Solar::SimpleMoonPhase> phaseOn(int day) const {
        const auto noon = calendar_.date(reference_.year, reference_.month, day, 12);
        if (!noon) return std::nullopt;
        return Solar::moonPhase(
            *noon, calendar_.timeZone(), false, std::nullopt, latitude_, longitude_,
            [](int year, int month) { return MoonPhaseDataManager::shared().events(year, month); });
    }

    double latitude_;
    double longitude_;
    Calendar calendar_;
    DateComponents reference_;
    ColorScheme scheme_;
    std::map<std::int64_t, PrincipalPhase> events_;
};

View header(const MoonWidgetData& data) {
    const DateFormatter formatter{device::localeIdentifier(), placeZone(data.timezone)};
    std::vector<View> initials;
    for (const auto& initial : weekdayInitials()) {
        initials.push_back(Text(initial).font(kWeekdayFont).color(Color::white().opacity(0.55)));
    }
    return VStack(HorizontalAlignment::leading, 10,
                  {Text(formatter.pattern(data.selectedTime, "MMMM yyyy"))
                       .font(kTitleFont)
                       .color(Color::white().opacity(0.95)),
                   row(std::move(initials))});
}

}  // namespace

View LargeLunovalView::body() const {
    const auto background = WidgetBackground{WidgetBackgroundStyle::moon}.body();
    if (!entry.widgetData) return moonPlaceholder().containerBackground(background);
    const auto& data = *entry.widgetData;
    // The record's own moment picks the month and today, so the grid agrees with the place's
    // day the other widgets show.
    const auto reference = Calendar(placeZone(data.timezone)).components(data.selectedTime);
    if (!reference) return moonPlaceholder().containerBackground(background);
    return VStack(HorizontalAlignment::leading, 8,
                  {header(data), MonthGrid(data, *reference, colorScheme).body()})
        .containerBackground(background);
}

}  // namespace lunoval
