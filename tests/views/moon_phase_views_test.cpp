#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "display_list_queries.hpp"
#include "drawn_entry.hpp"
#include "fake_text_measurer.hpp"
#include "views/moon_phase_views.hpp"
#include "views/widget_text.hpp"

namespace lunoval {
namespace {

using namespace ui;
using ::testing::Contains;
using testing::symbols;
using testing::texts;
using widgetkit::WidgetFamily;

const testing::FakeTextMeasurer kMeasurer;
const LayoutContext kContext{kMeasurer, {.contentMargin = 16}};
const Date kNow = Date::fromTimeIntervalSince1970(1760022000);

MoonWidgetEntry entryWith(std::optional<MoonWidgetData> data) {
    return testing::drawnEntry(kNow, std::move(data));
}

DisplayList entryView(const MoonWidgetEntry& entry, WidgetFamily family, Size size) {
    return render(MoonPhaseWidgetEntryView{entry, {.family = family}}.body(), size, kContext);
}

TEST(MoonPhaseWidgetEntryView, ShowsTheSmallLayoutForFamiliesItDoesNotList) {
    const auto entry = entryWith(MoonWidgetData::placeholder(kNow));
    const auto small = texts(render(SmallMoonPhaseView{entry}.body(), {170, 170}, kContext));
    EXPECT_EQ(texts(entryView(entry, WidgetFamily::systemSmall, {170, 170})), small);
    EXPECT_EQ(texts(entryView(entry, WidgetFamily::systemMedium, {364, 170})), small);
    EXPECT_THAT(texts(entryView(entry, WidgetFamily::systemLarge, {364, 382})),
                Contains("October 2025"));
}

TEST(MoonPhaseWidgetEntryView, AsksForLocationInEveryHomeScreenFamily) {
    const auto entry = entryWith(MoonWidgetData::permissionNeeded("Europe/Paris", kNow));
    for (const auto& [family, size] : {std::pair{WidgetFamily::systemSmall, Size{170, 170}},
                                       {WidgetFamily::systemMedium, Size{364, 170}},
                                       {WidgetFamily::systemLarge, Size{364, 382}}}) {
        const auto list = entryView(entry, family, size);
        EXPECT_THAT(texts(list), Contains("Location Access Required"));
        EXPECT_EQ(list.widgetURL, "lunoval://settings");
    }
}

TEST(MoonPhaseViews, ShowThePlaceholderWithoutData) {
    for (const auto& view : {SmallMoonPhaseView{entryWith(std::nullopt)}.body(),
                             MediumMoonView{entryWith(std::nullopt)}.body()}) {
        const auto list = render(view, {364, 170}, kContext);
        EXPECT_EQ(symbols(list), std::vector<std::string>{"moon.fill"});
        EXPECT_EQ(texts(list), std::vector<std::string>{"Open Lunoval"});
    }
}

TEST(MoonPhaseViews, TruncateTheLitPercentageAndRoundTheElevation) {
    for (const auto& [illumination, altitude, lit, elevation] :
         {std::tuple{0.999, -0.5, "99% illuminated", "-1°"},
          {1.0, 0.49, "100% illuminated", "0°"}}) {
        auto data = MoonWidgetData::placeholder(kNow);
        data.currentMoonPhase->illumination = illumination;
        data.moonAltitude = altitude;
        EXPECT_THAT(texts(render(SmallMoonPhaseView{entryWith(data)}.body(), {170, 170}, kContext)),
                    Contains(lit));
        EXPECT_THAT(texts(render(MediumMoonView{entryWith(data)}.body(), {364, 170}, kContext)),
                    Contains(elevation));
    }
}

// The medium chart keeps its width whatever the phase is called; the placeholder's chart shows
// its made-up present moon.
TEST(MediumMoonView, ChartWidthDoesNotFollowThePhaseName) {
    std::vector<double> elevationX;
    for (const char* name : {"Full", "Waxing Gibbous", "Przybywający garbaty"}) {
        // Made a month after the made-up day, as a preview is.
        auto data = MoonWidgetData::placeholder(kNow.addingTimeInterval(30 * 86'400));
        data.currentMoonPhase->phaseName = name;
        const auto list = render(MediumMoonView{entryWith(data)}.body(), {364, 170}, kContext);
        for (const auto& text : testing::all<DrawText>(list)) {
            if (text.text == "35°") elevationX.push_back(text.frame.x);
        }
        for (const auto& symbol : testing::all<DrawSymbol>(list)) {
            if (symbol.name == "moon.fill") {
                EXPECT_LT(symbol.frame.maxX(), 364) << name;
            }
        }
        EXPECT_THAT(symbols(list), Contains("moon.fill")) << name;
    }
    ASSERT_EQ(elevationX.size(), 3u);
    EXPECT_DOUBLE_EQ(elevationX[0], elevationX[1]);
    EXPECT_DOUBLE_EQ(elevationX[0], elevationX[2]);
}

TEST(SmallMoonPhaseView, ShowsOnlyTheMoonsetRowOnADayWithoutMoonrise) {
    auto data = MoonWidgetData::placeholder(kNow);
    data.moonrise.reset();
    const auto list = render(SmallMoonPhaseView{entryWith(data)}.body(), {170, 170}, kContext);
    EXPECT_EQ(symbols(list), std::vector<std::string>{"moonset.fill"});
    EXPECT_EQ(
        texts(list).back(),
        shortTimeText(*data.moonset, {.locale = "en_US", .zone = *TimeZone::named(data.timezone)}));
}

}  // namespace
}  // namespace lunoval
