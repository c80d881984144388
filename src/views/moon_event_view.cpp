#include "views/moon_event_view.hpp"

#include "platform/localization.hpp"
#include "views/widget_blocks.hpp"
#include "views/widget_container.hpp"
#include "views/widget_text.hpp"

namespace lunoval {

using namespace ui;
using widgetkit::WidgetFamily;

namespace {

constexpr double kGutter = 6;

Color white(double opacity) {
    return Color::white().opacity(opacity);
}

// Lines shrink this far before they are cut, as the other widgets' lines do.
constexpr double kLineFloor = 0.6;

struct EventLines {
    std::string what;
    std::string when;
};

bool isPhaseDay(const MoonWidgetData& data) {
    return data.nextMoonPhase && data.currentMoonPhase &&
           data.nextMoonPhase->phaseName == data.currentMoonPhase->phaseName &&
           data.nextPhaseTime == l10n::localized("today");
}

// A same-day eclipse outranks the next phase: a lunar one falls on the full moon anyway. On a
// principal phase's own day the phase line below already names it, so the event says it with
// its day in one line and gives the second to what else a reader of that sky asks: whether the
// moon is eclipsed.
EventLines eventLines(const MoonWidgetData& data) {
    if (const auto& eclipse = data.eclipseInfo) {
        return {eclipse->title, eclipse->isVisible
                                    // TRANSLATORS: Today's eclipse can be seen from the place
                                    ? l10n::localized("Visible today")
                                    // TRANSLATORS: Today's eclipse cannot be seen from the place
                                    : l10n::localized("Not visible here")};
    }
    if (isPhaseDay(data)) {
        return {phaseNameText(*data.nextMoonPhase) + " " + *data.nextPhaseTime,
                // TRANSLATORS: No eclipse falls on today's principal phase
                l10n::localized("No eclipse")};
    }
    return {data.nextMoonPhase ? phaseNameText(*data.nextMoonPhase)
                               // TRANSLATORS: Heading for when the next principal phase is unknown
                               : l10n::localized("Next phase"),
            data.nextPhaseTime.value_or("--")};
}

Text eventLine(const std::string& text, int lines) {
    return Text(text)
        .font(Font::system(11, FontWeight::medium))
        .color(white(0.95))
        .lineLimit(lines)
        .minimumScaleFactor(kLineFloor);
}

View eventBlock(const MoonWidgetData& data) {
    const auto lines = eventLines(data);
    return VStack(HorizontalAlignment::leading, 0,
                  {eventLine(lines.what, 2), View(eventLine(lines.when, 1)).padding({.top = 3})});
}

}  // namespace

View MoonEventWidgetEntryView::body() const {
    if (environment.family != WidgetFamily::systemSmall) return View{};
    return SmallMoonEventView{entry, 36, 42}.body();
}

// The left column holds the date and the moon; the event, the phase and the times line up to
// its right.
View SmallMoonEventView::body() const {
    const auto layout = [this](const MoonWidgetData& data) {
        std::vector<View> parts{
            HStack(VerticalAlignment::top, kGutter,
                   {dateBlock(data, entry.details.format, leftColumnWidth), eventBlock(data)})};
        if (data.currentMoonPhase) {
            parts.push_back(moonBlock(*data.currentMoonPhase, phaseIconSize, leftColumnWidth, 9));
        }
        parts.push_back(VStack(HorizontalAlignment::leading, 4,
                               {timeRow("moonrise.fill", data.moonrise, entry.details.format),
                                timeRow("moonset.fill", data.moonset, entry.details.format)})
                            .padding({.leading = leftColumnWidth + kGutter}));
        return VStack(HorizontalAlignment::leading, 8, std::move(parts));
    };
    return WidgetContainer{entry, WidgetFamily::systemSmall,
                           [&] {
                               const auto content =
                                   entry.widgetData ? layout(*entry.widgetData) : moonPlaceholder();
                               return content.containerBackground(WidgetBackground{}.body());
                           }}
        .body();
}

}  // namespace lunoval
