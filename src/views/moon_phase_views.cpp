#include "views/moon_phase_views.hpp"

#include <limits>

#include "platform/localization.hpp"
#include "views/large_lunoval_view.hpp"
#include "views/lockscreen/lock_screen_views.hpp"
#include "views/moon_elevation_chart.hpp"
#include "views/widget_blocks.hpp"
#include "views/widget_container.hpp"
#include "views/widget_text.hpp"

namespace lunoval {

using namespace ui;
using widgetkit::WidgetFamily;

namespace {

constexpr Color kPrimary = Color::white().opacity(0.95);
constexpr Color kSecondary = Color::white().opacity(0.7);
constexpr double kInfinity = std::numeric_limits<double>::infinity();

constexpr double kSmallMoonSize = 56;
constexpr double kGlowSize = 90;
constexpr double kMediumMoonSize = 36;
// A fixed column, so that the chart beside it keeps its width in every language and phase.
constexpr double kMediumMoonColumnWidth = 64;
// Keeps the chart clear of the widget's top and bottom edges; its markers stand above the curve.
constexpr double kChartMaxHeight = 112;

Color cyan() {
    return systemColor(SystemColor::cyan, ColorScheme::dark);
}

View moonDisc(const Solar::SimpleMoonPhase& phase, double size) {
    return whiteMoonDisc(phase, size, DiscTurn::byTilt).body();
}

View withMoonBackground(const View& content) {
    return content.containerBackground(WidgetBackground{WidgetBackgroundStyle::moon}.body());
}

View glow() {
    return Canvas([](GraphicsContext& context) {
               const auto size = context.size();
               context.fill(
                   Path::rectangle({0, 0, size.width, size.height}),
                   RadialGradient{
                       evenlySpaced({Color::white().opacity(0.14), Color::white().opacity(0.08),
                                     Color::white().opacity(0.0), Color::clear()}),
                       {size.width / 2, size.height / 2},
                       20,
                       58});
           })
        .frame(kGlowSize, kGlowSize);
}

// Clears the glow under the disc so the disc's dark part shows the backdrop.
View glowCutout() {
    return Canvas([](GraphicsContext& context) {
               const auto size = context.size();
               context.fill(Path::ellipse({0, 0, size.width, size.height}), Color::black());
           })
        .frame(kSmallMoonSize, kSmallMoonSize)
        .blendMode(BlendMode::destinationOut);
}

// The glow hangs around the disc without taking room in the layout.
View glowingMoon(const Solar::SimpleMoonPhase& phase) {
    return moonDisc(phase, kSmallMoonSize)
        .background(ZStack(Alignment::center, {glow(), glowCutout()}).compositingGroup())
        .padding({.bottom = 4});
}

View timeRow(const char* symbol, Font symbolFont, Color symbolColor, Font timeFont, Date time,
             const LocalFormat& format) {
    return HStack(VerticalAlignment::center, 3,
                  {Symbol(symbol).font(symbolFont).color(symbolColor),
                   Text(shortTimeText(time, format)).font(timeFont).color(kPrimary)});
}

std::vector<View> smallPhaseRows(const Solar::SimpleMoonPhase& phase) {
    return {glowingMoon(phase),
            Text(phaseNameText(phase))
                .font(Font::system(11, FontWeight::medium))
                .color(kPrimary)
                .lineLimit(2)
                .minimumScaleFactor(0.6)
                .multilineTextAlignment(TextAlignment::center),
            Text(illuminatedText(phase.illumination))
                .font(Font::system(10, FontWeight::medium))
                .color(kSecondary)};
}

std::vector<View> loadingRows() {
    return {Symbol("moon.fill").font(Font::system(40)).color(kSecondary),
            Text(l10n::localized("Loading..."))
                .font(Font::system(11, FontWeight::medium))
                .color(kPrimary)};
}

View smallRiseSetRows(const MoonWidgetData& data, const LocalFormat& format) {
    constexpr Font kTimeFont = Font::system(9, FontWeight::semibold);
    constexpr Font kSymbolFont = Font::system(9, FontWeight::bold);
    std::vector<View> rows;
    if (data.moonrise) {
        rows.push_back(
            timeRow("moonrise.fill", kSymbolFont, cyan(), kTimeFont, *data.moonrise, format));
    }
    if (data.moonset) {
        rows.push_back(timeRow("moonset.fill", kSymbolFont, Color::white().opacity(0.8), kTimeFont,
                               *data.moonset, format));
    }
    return VStack(HorizontalAlignment::leading, 2, std::move(rows)).padding({.top = 4});
}

View mediumMoonColumn(const MoonWidgetData& data) {
    if (!data.currentMoonPhase) return VStack(HorizontalAlignment::center, 2, loadingRows());
    const auto& phase = *data.currentMoonPhase;
    return VStack(HorizontalAlignment::leading, 4,
                  {moonDisc(phase, kMediumMoonSize),
                   Text(phaseNameText(phase))
                       .font(Font::system(10, FontWeight::semibold))
                       .color(kPrimary)
                       .lineLimit(2)
                       .minimumScaleFactor(0.6),
                   Text(litText(phase.illumination))
                       .font(Font::system(10, FontWeight::medium))
                       .color(kSecondary)
                       .minimumScaleFactor(0.6)});
}

View elevationChart(const WidgetDetails& details) {
    const auto chart =
        details.elevation
            ? MoonElevationChart{.day = *details.elevation, .format = details.format}.body()
            : View{};
    return chart.frame(FlexibleFrame{.maxWidth = kInfinity, .maxHeight = kChartMaxHeight});
}

View elevationColumn(const MoonWidgetData& data) {
    const auto elevation = data.moonAltitude ? elevationText(*data.moonAltitude) : "--°";
    return VStack(HorizontalAlignment::center, 2,
                  {Text(elevation).font(Font::system(10, FontWeight::semibold)).color(kPrimary),
                   Text(l10n::localized("Elevation"))
                       .font(Font::system(10, FontWeight::medium))
                       .color(kSecondary)});
}

View mediumRiseSetColumn(const MoonWidgetData& data, const LocalFormat& format) {
    constexpr Font kFont = Font::system(10, FontWeight::semibold);
    std::vector<View> rows;
    if (data.moonrise) {
        rows.push_back(
            timeRow("moonrise.fill", kFont, Color::white(), kFont, *data.moonrise, format));
    }
    if (data.moonset) {
        rows.push_back(
            timeRow("moonset.fill", kFont, Color::white(), kFont, *data.moonset, format));
    }
    return VStack(HorizontalAlignment::leading, 4, std::move(rows));
}

}  // namespace

View MoonPhaseWidgetEntryView::body() const {
    const auto contained = [this](std::function<View()> content) {
        return WidgetContainer{entry, environment.family, std::move(content)}.body();
    };
    switch (environment.family) {
        case WidgetFamily::systemLarge:
            return contained([entry = entry, scheme = environment.colorScheme] {
                return LargeLunovalView{entry, scheme}.body();
            });
        case WidgetFamily::accessoryCircular:
            return LockScreenCircularMoonPhaseView{entry}.body();
        case WidgetFamily::accessoryRectangular:
            return LockScreenRectangularMoonPhaseView{entry, 13}.body();
        case WidgetFamily::accessoryInline:
            return LockScreenInlineMoonPhaseView{entry}.body();
        default:  // systemSmall, and the families this widget does not offer
            return contained([entry = entry] { return SmallMoonPhaseView{entry}.body(); });
    }
}

View SmallMoonPhaseView::body() const {
    if (!entry.widgetData) return withMoonBackground(moonPlaceholder());
    const auto& data = *entry.widgetData;
    auto rows = data.currentMoonPhase ? smallPhaseRows(*data.currentMoonPhase) : loadingRows();
    if (data.moonrise || data.moonset) {
        rows.push_back(smallRiseSetRows(data, entry.details.format));
    }
    return withMoonBackground(
        VStack(HorizontalAlignment::center, 2, std::move(rows)).padding({.top = 4}));
}

View MediumMoonView::body() const {
    if (!entry.widgetData) return withMoonBackground(moonPlaceholder());
    const auto& data = *entry.widgetData;
    return withMoonBackground(HStack(VerticalAlignment::center, 8,
                                     {mediumMoonColumn(data).frame(
                                          kMediumMoonColumnWidth, std::nullopt, Alignment::leading),
                                      elevationChart(entry.details), elevationColumn(data),
                                      mediumRiseSetColumn(data, entry.details.format)})
                                  .padding(EdgeInsets::horizontal(6)));
}

}  // namespace lunoval
