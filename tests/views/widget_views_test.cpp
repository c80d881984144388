#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

#include "astro/test_dates.hpp"
#include "display_list_queries.hpp"
#include "drawn_entry.hpp"
#include "fake_text_measurer.hpp"
#include "views/large_lunoval_view.hpp"
#include "views/lockscreen/lock_screen_views.hpp"
#include "views/moon_event_view.hpp"
#include "views/moon_phase_views.hpp"
#include "views/simple_moon_phase_view.hpp"
#include "views/times_views.hpp"

namespace lunoval {
namespace {

using namespace ui;
using ::testing::Contains;
using widgetkit::WidgetFamily;

constexpr Size kSmall{170, 170}, kMedium{364, 170}, kLarge{364, 382};
constexpr Size kCircular{76, 76}, kRectangular{172, 76}, kInline{257, 26};
// 2025-10-09 20:00 UTC, already the 10th in Tokyo.
const Date kNow = Date::fromTimeIntervalSince1970(1760040000);

MoonWidgetEntry entryWith(std::optional<MoonWidgetData> data, const char* deviceZone = "UTC") {
    return testing::drawnEntry(kNow, std::move(data), "en_US", testing::zone(deviceZone));
}

DisplayList drawn(const View& view, Size size) {
    static const testing::FakeTextMeasurer measurer;
    return render(view, size, {measurer, {.contentMargin = 16}});
}

// A family a widget does not offer draws nothing; the phase widget offers them all.
TEST(WidgetEntryViews, FamiliesAWidgetDoesNotOfferDrawNothing) {
    const auto entry = entryWith(MoonWidgetData::placeholder(kNow));
    const auto nothing = [](const View& view) { return drawn(view, kSmall).commands.empty(); };
    for (const auto family : {WidgetFamily::systemSmall, WidgetFamily::systemMedium,
                              WidgetFamily::systemLarge, WidgetFamily::accessoryCircular,
                              WidgetFamily::accessoryRectangular, WidgetFamily::accessoryInline}) {
        const WidgetEnvironment in{.family = family};
        const bool small = family == WidgetFamily::systemSmall;
        EXPECT_FALSE(nothing(MoonPhaseWidgetEntryView{entry, in}.body()));
        EXPECT_EQ(nothing(MoonTimesWidgetEntryView{entry, in}.body()),
                  family == WidgetFamily::systemLarge);
        EXPECT_EQ(nothing(MoonSunTimesWidgetEntryView{entry, in}.body()), !small);
        EXPECT_EQ(nothing(MoonEventWidgetEntryView{entry, in}.body()), !small);
    }
}

// The lit fraction is cut, never rounded up to a fuller moon, and the elevation rounds halves
// away from zero. Times are the place's, or the device's where the place's zone is unknown,
// with dashes for what does not happen. Without location every home-screen family asks for it.
// A record with no phase yet shows the phase loading.
TEST(WidgetViews, WriteWhatTheRecordSays) {
    const auto record = [](double illumination, double altitude, const char* zone) {
        auto data = MoonWidgetData::placeholder(kNow);
        data.currentMoonPhase->illumination = illumination;
        data.moonAltitude = altitude;
        data.timezone = zone;
        data.sunset.reset();
        return data;
    };
    const auto almostFull = entryWith(record(0.999, -0.5, "Asia/Tokyo"));
    const auto full = entryWith(record(1, 0.49, "Asia/Tokyo"));
    const auto unknownZone = entryWith(record(0.75, 0, "Nowhere/Atlantis"), "Asia/Tokyo");
    const auto denied = entryWith(MoonWidgetData::permissionNeeded("Europe/Paris", kNow));
    auto phaseless = MoonWidgetData::placeholder(kNow);
    phaseless.currentMoonPhase.reset();
    const auto noPhase = entryWith(phaseless);
    const auto phase = [&](WidgetFamily family) {
        return MoonPhaseWidgetEntryView{denied, {.family = family}}.body();
    };
    const std::tuple<View, Size, std::string> cases[] = {
        {SmallMoonPhaseView{almostFull}.body(), kSmall, "99% illuminated"},
        {SmallMoonTimesView{almostFull}.body(), kSmall, "99% lit"},
        {LockScreenCircularMoonPhaseView{almostFull}.body(), kCircular, "99%"},
        {LockScreenInlineMoonPhaseView{almostFull}.body(), kInline, "Waxing Gibbous 99%"},
        {MediumMoonView{almostFull}.body(), kMedium, "-1°"},
        {MediumMoonView{full}.body(), kMedium, "0°"},
        {SmallMoonAndSunTimes{almostFull}.body(), kSmall, "3:15\u202fAM"},
        {SmallMoonAndSunTimes{almostFull}.body(), kSmall, "--:--"},
        {SmallMoonAndSunTimes{unknownZone}.body(), kSmall, "10"},
        {LockScreenRectangularTimesView{unknownZone}.body(), kRectangular, "3:15\u202fAM"},
        {LockScreenRectangularTimesView{unknownZone}.body(), kRectangular, "--:--"},
        {phase(WidgetFamily::systemSmall), kSmall, "Location Access Required"},
        {phase(WidgetFamily::systemMedium), kMedium, "Location Access Required"},
        {phase(WidgetFamily::systemLarge), kLarge, "Location Access Required"},
        {SmallMoonPhaseView{noPhase}.body(), kSmall, "Loading..."},
    };
    for (const auto& [view, size, text] : cases) {
        EXPECT_THAT(testing::texts(drawn(view, size)), Contains(text));
    }
}

// The month's grid runs from Sunday: the 1st and the last day sit under their weekdays, and
// no day follows the last.
TEST(LargeLunovalView, LaysTheMonthOutUnderItsWeekdays) {
    const auto month = [](double noon, ColorScheme scheme) {
        auto data = MoonWidgetData::placeholder(Date::fromTimeIntervalSince1970(noon));
        data.timezone = "Europe/Paris";
        return drawn(LargeLunovalView{entryWith(data), scheme}.body(), kLarge);
    };
    // Noon UTC on 2026-08-01, 2026-02-01 and 2024-02-10.
    for (const auto& [noon, first, last, days] : {std::tuple{1785585600.0, "Sa", "M", 31},
                                                  {1769947200.0, "S", "Sa", 28},
                                                  {1707566400.0, "Th", "Th", 29}}) {
        const auto texts = testing::all<DrawText>(month(noon, ColorScheme::dark));
        const auto centerX = [&](const std::string& text) {
            const auto found = std::ranges::find(texts, text, &DrawText::text);
            return found == texts.end() ? std::nan("") : found->frame.center().x;
        };
        EXPECT_DOUBLE_EQ(centerX("1"), centerX(first)) << days;
        EXPECT_DOUBLE_EQ(centerX(std::to_string(days)), centerX(last)) << days;
        EXPECT_TRUE(std::isnan(centerX(std::to_string(days + 1)))) << days;
    }
    // The principal phases take the inverse symbols in the light scheme.
    const auto dark = testing::all<DrawSymbol>(month(1785585600, ColorScheme::dark));
    const auto light = testing::all<DrawSymbol>(month(1785585600, ColorScheme::light));
    ASSERT_EQ(dark.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(light.at(i).name, dark[i].name + ".inverse");
}

// A tint over a waning disc's lit part runs from clear at the right edge to full at the left;
// over a waxing one it has no length, as published. At scale 3 the disc spans 1 to 55.
TEST(MoonDisc, TintRunsAcrossTheLitPartOfAWaningDisc) {
    SimpleMoonPhaseView disc{.size = 56, .tintColor = Color::white(), .strokeWidth = 1};
    for (const auto& [phase, endX] : {std::pair{Solar::PhaseType::waxingGibbous, 55.0},
                                      {Solar::PhaseType::waningGibbous, 1.0}}) {
        disc.moonPhase = {.illumination = 0.7, .phaseType = phase};
        const auto fills = testing::all<FillPath>(drawn(disc.body(), {56, 56}));
        const auto tint = std::get<LinearGradient>(fills.at(1).paint);
        EXPECT_EQ(fills[1].path, fills[0].path);
        EXPECT_EQ(std::pair(tint.start, tint.end), std::pair(Point{55, 1}, Point{endX, 1}));
        EXPECT_EQ(tint.stops.front().color, Color::white().opacity(0));
        EXPECT_EQ(tint.stops.back().color, Color::white());
    }
}

}  // namespace
}  // namespace lunoval
