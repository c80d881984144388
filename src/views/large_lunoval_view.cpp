#include "views/large_lunoval_view.hpp"

#include <array>
#include <limits>

#include "platform/date_formatter.hpp"
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

// The entry's month as a grid of weeks from Sunday, today picked out.
View monthGrid(const PhaseMonth& month, ColorScheme scheme) {
    const auto dayMoon = [scheme](const MonthDay& day) -> View {
        if (day.principalPhase) {
            std::string name = phaseSymbol(*day.principalPhase);
            if (scheme == ColorScheme::light) name += ".inverse";
            return View(Symbol(name).resizable().color(cyan()))
                .frame(kPhaseSymbolSize, kPhaseSymbolSize);
        }
        if (!day.phase) return {};
        return whiteMoonDisc(*day.phase, kMoonSize, DiscTurn::upright).body();
    };
    // Empty cells before the 1st and after the last day complete the weeks.
    std::vector<View> cells(static_cast<std::size_t>(month.leadingDays));
    for (const auto& day : month.days) {
        const bool isToday = day.day == month.today;
        const auto number =
            Text(std::to_string(day.day))
                .font(Font::system(kDayFontSize, isToday ? FontWeight::bold : FontWeight::medium))
                .color(isToday ? cyan() : Color::white().opacity(0.9));
        cells.push_back(VStack(HorizontalAlignment::center, kCellSpacing,
                               {number, dayMoon(day).frame(kMoonSize, kMoonSize)}));
    }
    cells.resize((cells.size() + kDaysPerWeek - 1) / kDaysPerWeek * kDaysPerWeek);

    std::vector<View> rows;
    for (std::size_t start = 0; start < cells.size(); start += kDaysPerWeek) {
        rows.push_back(row({cells.begin() + static_cast<std::ptrdiff_t>(start),
                            cells.begin() + static_cast<std::ptrdiff_t>(start + kDaysPerWeek)})
                           .frame(FlexibleFrame{.maxHeight = kInfinity}));
    }
    return VStack(HorizontalAlignment::center, kRowSpacing, std::move(rows));
}

View header(const MoonWidgetData& data, const LocalFormat& format) {
    const DateFormatter formatter{format.locale, format.zone};
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
    // The record's own moment picks the month and today, so the grid agrees with the place's
    // day the other widgets show.
    const auto& month = entry.details.month;
    if (!month) return moonPlaceholder().containerBackground(background);
    return VStack(HorizontalAlignment::leading, 8,
                  {header(*entry.widgetData, entry.details.format), monthGrid(*month, colorScheme)})
        .containerBackground(background);
}

}  // namespace lunoval
