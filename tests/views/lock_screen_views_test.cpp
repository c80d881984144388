#include <gtest/gtest.h>

#include "drawn_entry.hpp"
#include "fake_text_measurer.hpp"
#include "views/lockscreen/lock_screen_views.hpp"
#include "views/widget_text.hpp"

namespace lunoval {
namespace {

using namespace ui;
using Strings = std::vector<std::string>;

const testing::FakeTextMeasurer kMeasurer;
const LayoutContext kContext{kMeasurer, {}};
constexpr Size kInline{257, 26};
constexpr Size kCircular{76, 76};
constexpr Size kRectangular{172, 76};

const Date kNow = Date::fromTimeIntervalSince1970(1760050000);

template <typename Wanted>
std::vector<Wanted> all(const DisplayList& list) {
    std::vector<Wanted> found;
    for (const auto& command : list.commands) {
        if (const auto* match = std::get_if<Wanted>(&command)) found.push_back(*match);
    }
    return found;
}

Strings texts(const DisplayList& list) {
    Strings found;
    for (const auto& text : all<DrawText>(list)) found.push_back(text.text);
    return found;
}

Strings symbols(const DisplayList& list) {
    Strings found;
    for (const auto& symbol : all<DrawSymbol>(list)) found.push_back(symbol.name);
    return found;
}

MoonWidgetEntry entryWith(std::optional<MoonWidgetData> data) {
    return testing::drawnEntry(kNow, std::move(data));
}

MoonWidgetData record() {
    return MoonWidgetData::placeholder(kNow);
}

MoonWidgetData litRecord(double illumination) {
    auto data = record();
    data.currentMoonPhase->illumination = illumination;
    return data;
}

std::string time(const std::optional<Date>& date) {
    return shortTimeText(*date, {.locale = "en_US", .zone = *TimeZone::named(record().timezone)});
}

TEST(LockScreenInlineMoonPhaseView, SaysThePhaseOrWhatIsMissing) {
    auto withoutPhase = record();
    withoutPhase.currentMoonPhase.reset();
    const std::pair<std::optional<MoonWidgetData>, std::string> cases[] = {
        {litRecord(0.78), "Waxing Gibbous 78%"},
        {withoutPhase, "Moon Phase"},
        {std::nullopt, "Open Lunoval"},
    };
    for (const auto& [data, line] : cases) {
        const auto list =
            render(LockScreenInlineMoonPhaseView{entryWith(data)}.body(), kInline, kContext);
        EXPECT_EQ(texts(list), Strings{line});
    }
}

TEST(LockScreenPhaseViews, TruncateThePercentage) {
    for (const auto& [illumination, shown] : {std::pair{0.999, "99%"}, {1.0, "100%"}}) {
        const auto entry = entryWith(litRecord(illumination));
        const auto circular =
            render(LockScreenCircularMoonPhaseView{entry}.body(), kCircular, kContext);
        const auto rectangular =
            render(LockScreenRectangularMoonPhaseView{entry}.body(), kRectangular, kContext);
        const auto line = render(LockScreenInlineMoonPhaseView{entry}.body(), kInline, kContext);
        EXPECT_EQ(texts(circular), Strings{shown});
        EXPECT_EQ(texts(rectangular).at(1), shown);
        EXPECT_EQ(texts(line), Strings{std::string("Waxing Gibbous ") + shown});
    }
}

TEST(LockScreenViews, ShowTheirNoRecordForms) {
    const auto entry = entryWith(std::nullopt);
    const std::tuple<View, Size, Strings, Strings> cases[] = {
        {LockScreenInlineMoonPhaseView{entry}.body(), kInline, {"Open Lunoval"}, {}},
        {LockScreenCircularMoonPhaseView{entry}.body(), kCircular, {"--%"}, {"moon"}},
        {LockScreenRectangularMoonPhaseView{entry}.body(), kRectangular, {"Loading..."}, {"moon"}},
        {LockScreenInlineTimesView{entry}.body(), kInline, {"Open Lunoval"}, {}},
        {LockScreenCircularMoonTimesView{entry}.body(), kCircular, {"--:--"}, {"moon"}},
        {LockScreenRectangularTimesView{entry}.body(), kRectangular, {"Loading..."}, {}},
    };
    for (const auto& [view, size, wantedTexts, wantedSymbols] : cases) {
        const auto list = render(view, size, kContext);
        EXPECT_EQ(texts(list), wantedTexts);
        EXPECT_EQ(symbols(list), wantedSymbols);
    }
}

TEST(LockScreenTimesViews, AskForLocationWhenTheRecordNeedsIt) {
    const auto entry = entryWith(MoonWidgetData::permissionNeeded("UTC", kNow));
    const auto line = render(LockScreenInlineTimesView{entry}.body(), kInline, kContext);
    const auto circular =
        render(LockScreenCircularMoonTimesView{entry}.body(), kCircular, kContext);
    const auto rectangular =
        render(LockScreenRectangularTimesView{entry}.body(), kRectangular, kContext);
    EXPECT_EQ(texts(line), Strings{"Moon/Sun - Allow Location"});
    EXPECT_EQ(texts(circular), Strings{"Allow"});
    EXPECT_EQ(symbols(circular), Strings{"location.slash"});
    EXPECT_EQ(texts(rectangular), (Strings{"Location Required", "Enable in Settings"}));
    EXPECT_EQ(symbols(rectangular), Strings{"location.slash"});
    const auto title = all<DrawText>(rectangular).at(0);
    const auto hint = all<DrawText>(rectangular).at(1);
    EXPECT_EQ(title.font, Font::system(12, FontWeight::medium));
    EXPECT_EQ(hint.font, Font::system(10));
    EXPECT_EQ(hint.color, systemColor(SystemColor::secondaryLabel, ColorScheme::dark));
    EXPECT_GT(hint.frame.y, title.frame.maxY());
}

TEST(LockScreenTimesViews, ShowDashesForAbsentTimes) {
    auto data = record();
    data.moonrise.reset();
    data.sunset.reset();
    const auto entry = entryWith(data);
    const auto circular =
        render(LockScreenCircularMoonTimesView{entry}.body(), kCircular, kContext);
    const auto rectangular =
        render(LockScreenRectangularTimesView{entry}.body(), kRectangular, kContext);
    EXPECT_EQ(texts(circular), (Strings{"--:--", time(data.moonset)}));
    EXPECT_EQ(symbols(circular), (Strings{"moonrise.fill", "moonset.fill"}));
    EXPECT_EQ(texts(rectangular),
              (Strings{"--:--", time(data.moonset), time(data.sunrise), "--:--"}));
    EXPECT_EQ(symbols(rectangular),
              (Strings{"moonrise.fill", "moonset.fill", "sunrise.fill", "sunset.fill"}));
}

TEST(LockScreenInlineTimesView, ShowsTheMoonriseOrOnlyTheMoon) {
    auto noRise = record();
    noRise.moonrise.reset();
    const auto withRise =
        render(LockScreenInlineTimesView{entryWith(record())}.body(), kInline, kContext);
    const auto withoutRise =
        render(LockScreenInlineTimesView{entryWith(noRise)}.body(), kInline, kContext);
    EXPECT_EQ(symbols(withRise), Strings{"moonrise.fill"});
    EXPECT_EQ(texts(withRise), Strings{time(record().moonrise)});
    EXPECT_EQ(symbols(withoutRise), Strings{"moon"});
    EXPECT_TRUE(texts(withoutRise).empty());
}

}  // namespace
}  // namespace lunoval
