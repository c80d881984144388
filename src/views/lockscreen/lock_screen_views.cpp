#include "views/lockscreen/lock_screen_views.hpp"

#include <limits>

#include "platform/localization.hpp"
#include "views/widget_blocks.hpp"
#include "views/widget_text.hpp"

namespace lunoval {

using namespace ui;

namespace {

// The host draws the lock screen vibrant, white with luminance as alpha, so the palette is
// white at a few strengths.
constexpr Color kPrimary = Color::white();
constexpr Color kSecondary = Color::white().opacity(0.7);

// One line in a 26-point-tall slot.
constexpr Font kInlineFont = Font::system(15, FontWeight::medium);
// Small enough that "moon" and a short text fit inside the circle.
constexpr double kNoDataSymbolSize = 24;
constexpr double kNoDataTextSize = 11;

constexpr const char* kNoTime = "--:--";
// The 76-point circle is 68 points wide 16 points above and below its centre, where the
// circular times view's two rows end; a few points spare keep antialiased edges inside.
constexpr double kCircularRowsWidth = 62;
constexpr double kFill = std::numeric_limits<double>::infinity();

// Fills "%s" with the name, "%d" with the number and "%%" with a percent sign, in whatever
// order the translation puts them.
// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): a format before what fills it
std::string interpolated(const std::string& format, const std::string& name, int number) {
    std::string line;
    for (std::size_t at = 0; at < format.size(); ++at) {
        const char next = at + 1 < format.size() ? format[at + 1] : '\0';
        if (format[at] != '%' || (next != 's' && next != 'd' && next != '%')) {
            line += format[at];
            continue;
        }
        line += next == 's' ? name : next == 'd' ? std::to_string(number) : "%";
        ++at;
    }
    return line;
}

std::string percentText(const Solar::SimpleMoonPhase& phase) {
    return std::to_string(litPercent(phase.illumination)) + "%";
}

std::string timeText(const std::optional<Date>& time, const LocalFormat& format) {
    return time ? shortTimeText(*time, format) : kNoTime;
}

// Turned by the tilt as on the home screen, so both show the same moon.
View disc(const Solar::SimpleMoonPhase& phase) {
    return whiteMoonDisc(phase, 40, DiscTurn::byTilt).body();
}

View inlineText(const std::string& text) {
    return Text(text).font(kInlineFont).color(kPrimary);
}

// A rise or set symbol and its time, side by side.
View timePair(const char* symbol, const std::string& time, double fontSize, Color color,
              double spacing) {
    return HStack(VerticalAlignment::center, spacing,
                  {Symbol(symbol).font(Font::system(fontSize, FontWeight::bold)).color(color),
                   Text(time)
                       .font(Font::system(fontSize, FontWeight::semibold))
                       .color(color)
                       .minimumScaleFactor(0.7)});
}

// Fills the accessory and sits at its leading edge, as the host's own rectangular ones do.
View leadingInAccessory(const View& content) {
    return content.frame(
        FlexibleFrame{.maxWidth = kFill, .maxHeight = kFill, .alignment = Alignment::leading});
}

View circularNoData(const std::string& text) {
    return VStack(
        HorizontalAlignment::center, 2,
        {Symbol("moon").font(Font::system(kNoDataSymbolSize)).color(kPrimary),
         Text(text).font(Font::system(kNoDataTextSize, FontWeight::medium)).color(kSecondary)});
}

std::optional<Solar::SimpleMoonPhase> phaseOf(const MoonWidgetEntry& entry) {
    if (!entry.widgetData) return std::nullopt;
    return entry.widgetData->currentMoonPhase;
}

}  // namespace

View LockScreenInlineMoonPhaseView::body() const {
    if (!entry.widgetData) return inlineText(l10n::localized("Open Lunoval"));
    const auto phase = phaseOf(entry);
    if (!phase) return inlineText(l10n::localized("Moon Phase"));
    // TRANSLATORS: Lock-screen line: moon phase name (%s) and lit percentage (%d), e.g.
    // "Waxing Gibbous 78%"
    const auto format = l10n::localized("%s %d%%");
    return inlineText(interpolated(format, phaseNameText(*phase), litPercent(phase->illumination)));
}

View LockScreenCircularMoonPhaseView::body() const {
    const auto phase = phaseOf(entry);
    if (!phase) return circularNoData("--%");
    return VStack(
        HorizontalAlignment::center, 2,
        {disc(*phase),
         Text(percentText(*phase)).font(Font::system(9, FontWeight::semibold)).color(kPrimary)});
}

View LockScreenRectangularMoonPhaseView::body() const {
    const auto phase = phaseOf(entry);
    if (!phase) {
        return leadingInAccessory(HStack(
            VerticalAlignment::center, 6,
            {Symbol("moon").font(Font::system(kNoDataSymbolSize)).color(kPrimary),
             Text(l10n::localized("Loading...")).font(Font::system(fontSize)).color(kSecondary)}));
    }
    const auto& data = *entry.widgetData;
    std::vector<View> lines{Text(phaseNameText(*phase))
                                .font(Font::system(13, FontWeight::semibold))
                                .color(kPrimary)
                                .minimumScaleFactor(0.7),
                            Text(percentText(*phase))
                                .font(Font::system(fontSize, FontWeight::medium))
                                .color(kSecondary)};
    // A day without a rise or set leaves its row out rather than showing a blank.
    if (data.moonrise) {
        lines.push_back(timePair("moonrise.fill",
                                 shortTimeText(*data.moonrise, entry.details.format), fontSize,
                                 kPrimary, 4));
    }
    if (data.moonset) {
        lines.push_back(timePair("moonset.fill", shortTimeText(*data.moonset, entry.details.format),
                                 fontSize, kPrimary, 4));
    }
    return leadingInAccessory(HStack(VerticalAlignment::center, 0,
                                     {disc(*phase).padding({.trailing = 4}),
                                      VStack(HorizontalAlignment::leading, 4, std::move(lines))}));
}

View LockScreenInlineTimesView::body() const {
    if (!entry.widgetData) return inlineText(l10n::localized("Open Lunoval"));
    const auto& data = *entry.widgetData;
    if (data.needsLocationPermission) {
        return inlineText(l10n::localized("Moon/Sun - Allow Location"));
    }
    const auto symbol = [](const char* name) { return Symbol(name).font(kInlineFont); };
    if (!data.moonrise) return symbol("moon");
    return HStack(
        VerticalAlignment::center, 4,
        {symbol("moonrise.fill"), inlineText(shortTimeText(*data.moonrise, entry.details.format))});
}

View LockScreenCircularMoonTimesView::body() const {
    if (!entry.widgetData) return circularNoData(kNoTime);
    const auto& data = *entry.widgetData;
    if (data.needsLocationPermission) {
        return VStack(HorizontalAlignment::center, 2,
                      {Symbol("location.slash").font(Font::system(20)).color(kPrimary),
                       Text(l10n::localized("Allow"))
                           .font(Font::system(fontSize, FontWeight::medium))
                           .color(kSecondary)});
    }
    // Leading-aligned so the two symbols stand in one column; no wider than the circle is at
    // the rows' outer edges, so a long time shrinks rather than reach past the mask.
    return VStack(HorizontalAlignment::leading, 4,
                  {timePair("moonrise.fill", timeText(data.moonrise, entry.details.format),
                            fontSize, kPrimary, 2),
                   timePair("moonset.fill", timeText(data.moonset, entry.details.format), fontSize,
                            kPrimary, 2)})
        .frame(FlexibleFrame{.maxWidth = kCircularRowsWidth});
}

View LockScreenRectangularTimesView::body() const {
    if (!entry.widgetData) {
        return leadingInAccessory(VStack(HorizontalAlignment::leading, 2,
                                         {Text(l10n::localized("Loading..."))
                                              .font(Font::system(fontSize))
                                              .color(kSecondary)})
                                      .padding(4));
    }
    const auto& data = *entry.widgetData;
    if (data.needsLocationPermission) {
        const auto prompt = Font::system(12, FontWeight::medium);
        return leadingInAccessory(VStack(
            HorizontalAlignment::leading, 2,
            {HStack(VerticalAlignment::center, 4,
                    {Symbol("location.slash").font(prompt).color(kPrimary),
                     Text(l10n::localized("Location Required")).font(prompt).color(kPrimary)}),
             Text(l10n::localized("Enable in Settings"))
                 .font(Font::system(10))
                 .color(systemColor(SystemColor::secondaryLabel, ColorScheme::dark))}));
    }
    const auto row = [&](const char* rise, const std::optional<Date>& riseTime, const char* set,
                         const std::optional<Date>& setTime, Color color) {
        // Equal halves keep the set times of both rows in one column.
        const auto half = [&](const char* symbol, const std::optional<Date>& time) {
            return timePair(symbol, timeText(time, entry.details.format), fontSize, color, 2)
                .frame(FlexibleFrame{.maxWidth = kFill, .alignment = Alignment::leading});
        };
        return HStack(VerticalAlignment::center, 8, {half(rise, riseTime), half(set, setTime)});
    };
    // The moon first: it is what the widget is about; the sun is context.
    return leadingInAccessory(
        VStack(HorizontalAlignment::leading, 6,
               {row("moonrise.fill", data.moonrise, "moonset.fill", data.moonset, kPrimary),
                row("sunrise.fill", data.sunrise, "sunset.fill", data.sunset, kSecondary)}));
}

}  // namespace lunoval
