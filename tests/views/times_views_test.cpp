#include <gtest/gtest.h>

#include "display_list_queries.hpp"
#include "drawn_entry.hpp"
#include "fake_text_measurer.hpp"
#include "views/lockscreen/lock_screen_views.hpp"
#include "views/moon_phase_views.hpp"
#include "views/times_views.hpp"

namespace lunoval {
namespace {

using namespace ui;
using testing::symbols;
using testing::texts;
using widgetkit::WidgetFamily;

const testing::FakeTextMeasurer kMeasurer;
const LayoutContext kContext{kMeasurer, {.contentMargin = 16}};
// 2025-10-09 20:00 UTC, already the 10th in Tokyo.
const Date kEvening = Date::fromTimeIntervalSince1970(1760040000);

DisplayList drawn(const View& view) {
    return render(view, {170, 170}, kContext);
}

MoonWidgetEntry entryWith(std::optional<MoonWidgetData> data, const char* locale = "en_US",
                          const char* deviceZone = "UTC") {
    return testing::drawnEntry(kEvening, std::move(data), locale, *TimeZone::named(deviceZone));
}

TEST(TimesWidgetEntryViews, PickTheLayoutOfEachFamily) {
    const auto entry = entryWith(MoonWidgetData::placeholder(kEvening));
    for (const auto& [family, expected] : std::vector<std::pair<WidgetFamily, View>>{
             {WidgetFamily::systemSmall, SmallMoonTimesView{entry}.body()},
             {WidgetFamily::systemMedium, MediumMoonView{entry}.body()},
             {WidgetFamily::systemLarge, View{}},
             {WidgetFamily::accessoryCircular, LockScreenCircularMoonTimesView{entry, 12}.body()},
             {WidgetFamily::accessoryRectangular, LockScreenRectangularTimesView{entry, 13}.body()},
             {WidgetFamily::accessoryInline, LockScreenInlineTimesView{entry}.body()}}) {
        const WidgetEnvironment environment{.family = family};
        EXPECT_EQ(drawn(MoonTimesWidgetEntryView{entry, environment}.body()).commands,
                  drawn(expected).commands)
            << familyName(family);
        EXPECT_EQ(drawn(MoonSunTimesWidgetEntryView{entry, environment}.body()).commands.empty(),
                  family != WidgetFamily::systemSmall);
    }
}

TEST(SmallTimesViews, ShowTheDayInThePlacesZoneOrElseTheDevicesWithDashesForAbsentTimes) {
    for (const auto& [deviceZone, placeZone] :
         {std::pair{"UTC", "Asia/Tokyo"}, {"Asia/Tokyo", "Nowhere/Atlantis"}}) {
        auto data = MoonWidgetData::placeholder(kEvening);
        data.timezone = placeZone;
        data.sunset.reset();
        const auto entry = entryWith(data, "en_US", deviceZone);
        EXPECT_EQ(texts(drawn(SmallMoonTimesView{entry}.body())),
                  (std::vector<std::string>{"OCT", "10", "2:30\u202fPM", "3:15\u202fAM",
                                            "Waxing Gibbous", "75% lit"}));
        const auto both = drawn(SmallMoonAndSunTimes{entry}.body());
        EXPECT_EQ(texts(both),
                  (std::vector<std::string>{"OCT", "10", "12:00\u202fAM", "--:--", "2:30\u202fPM",
                                            "3:15\u202fAM", "Waxing Gibbous", "75% lit"}));
        EXPECT_EQ(symbols(both), (std::vector<std::string>{"sunrise.fill", "sunset.fill",
                                                           "moonrise.fill", "moonset.fill"}));
    }
}

TEST(SmallTimesViews, UpperCaseTheMonthWhateverTheLocaleWrites) {
    auto data = MoonWidgetData::placeholder(Date::fromTimeIntervalSince1970(1739000000));
    EXPECT_EQ(texts(drawn(SmallMoonTimesView{entryWith(data, "fr_FR")}.body())).at(0), "FÉVR.");
    l10n::useLanguage("en_US");
}

TEST(SmallTimesViews, ShowTheirPlaceholderOrThePermissionPrompt) {
    const auto needsPermission = entryWith(MoonWidgetData::permissionNeeded("UTC", kEvening));
    for (const auto& [view, symbol] : std::vector<std::pair<View, std::string>>{
             {SmallMoonTimesView{entryWith(std::nullopt)}.body(), "moon.fill"},
             {SmallMoonAndSunTimes{entryWith(std::nullopt)}.body(), "sun.and.horizon.fill"},
             {SmallMoonTimesView{needsPermission}.body(), "location.slash.fill"},
             {SmallMoonAndSunTimes{needsPermission}.body(), "location.slash.fill"}}) {
        EXPECT_EQ(symbols(drawn(view)), std::vector<std::string>{symbol});
    }
}

}  // namespace
}  // namespace lunoval
