#include "views/times_views.hpp"

#include "views/lockscreen/lock_screen_views.hpp"
#include "views/moon_phase_views.hpp"
#include "views/widget_blocks.hpp"
#include "views/widget_container.hpp"
#include "views/widget_text.hpp"

namespace lunoval {

using namespace ui;
using widgetkit::WidgetFamily;

namespace {

// The date block and the moon share one left column; every text lines up to its right.
constexpr double kColumnWidth = 46;
constexpr double kGutter = 6;

// The date beside the day's times, and the moon under the date beside its name.
View timesLayout(const MoonWidgetData& data, const LocalFormat& format, std::vector<View> rows) {
    std::vector<View> parts{HStack(VerticalAlignment::top, kGutter,
                                   {dateBlock(data, format, kColumnWidth),
                                    VStack(HorizontalAlignment::leading, 4, std::move(rows))})};
    if (data.currentMoonPhase)
        parts.push_back(moonBlock(*data.currentMoonPhase, 33, kColumnWidth, 11));
    return VStack(HorizontalAlignment::leading, 12, std::move(parts));
}

View smallTimesWidget(const MoonWidgetEntry& entry, WidgetBackgroundStyle style,
                      const std::function<View(const MoonWidgetData&)>& layout,
                      const std::function<View()>& placeholder) {
    return WidgetContainer{entry, WidgetFamily::systemSmall,
                           [&] {
                               const auto content =
                                   entry.widgetData ? layout(*entry.widgetData) : placeholder();
                               return content.containerBackground(WidgetBackground{style}.body());
                           }}
        .body();
}

}  // namespace

View MoonTimesWidgetEntryView::body() const {
    switch (environment.family) {
        case WidgetFamily::systemSmall:
            return SmallMoonTimesView{entry}.body();
        case WidgetFamily::systemMedium:
            return WidgetContainer{entry, WidgetFamily::systemMedium,
                                   [entry = entry] { return MediumMoonView{entry}.body(); }}
                .body();
        case WidgetFamily::accessoryCircular:
            return LockScreenCircularMoonTimesView{entry, 12}.body();
        case WidgetFamily::accessoryRectangular:
            return LockScreenRectangularTimesView{entry, 13}.body();
        case WidgetFamily::accessoryInline:
            return LockScreenInlineTimesView{entry}.body();
        default:
            return View{};
    }
}

View MoonSunTimesWidgetEntryView::body() const {
    if (environment.family != WidgetFamily::systemSmall) return View{};
    return SmallMoonAndSunTimes{entry}.body();
}

View SmallMoonTimesView::body() const {
    return smallTimesWidget(
        entry, WidgetBackgroundStyle::moon,
        [&format = entry.details.format](const MoonWidgetData& data) {
            return timesLayout(data, format,
                               {timeRow("moonrise.fill", data.moonrise, format),
                                timeRow("moonset.fill", data.moonset, format)});
        },
        moonPlaceholder);
}

// Without a record the sun widget shows the sun placeholder, which names it for what it is
// among the moon widgets around it.
View SmallMoonAndSunTimes::body() const {
    return smallTimesWidget(
        entry, WidgetBackgroundStyle::sun,
        [&format = entry.details.format](const MoonWidgetData& data) {
            return timesLayout(data, format,
                               {timeRow("sunrise.fill", data.sunrise, format),
                                timeRow("sunset.fill", data.sunset, format),
                                timeRow("moonrise.fill", data.moonrise, format),
                                timeRow("moonset.fill", data.moonset, format)});
        },
        sunPlaceholder);
}

}  // namespace lunoval
