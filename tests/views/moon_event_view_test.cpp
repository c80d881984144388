#include <gtest/gtest.h>

#include "display_list_queries.hpp"
#include "drawn_entry.hpp"
#include "eclipse/eclipse_event.hpp"
#include "fake_text_measurer.hpp"
#include "timeline/widget_data_builder.hpp"
#include "ui/pango_text_measurer.hpp"
#include "views/moon_event_view.hpp"

namespace lunoval {
namespace {

using namespace ui;
using testing::all;
using testing::symbols;
using testing::texts;
using widgetkit::WidgetFamily;

const testing::FakeTextMeasurer kMeasurer;
const LayoutContext kContext{kMeasurer, {.contentMargin = 16}};
const Date kNoon = Date::fromTimeIntervalSince1970(1757246400);  // 2025-09-07 12:00 UTC

DisplayList eventView(std::optional<MoonWidgetData> data) {
    const SmallMoonEventView view{testing::drawnEntry(kNoon, std::move(data)), 36, 42};
    return render(view.body(), {170, 170}, kContext);
}

TEST(MoonEventWidgetEntryView, DrawsOnlyInTheSmallFamily) {
    const auto entry = testing::drawnEntry(kNoon, MoonWidgetData::placeholder(kNoon));
    for (const auto family : {WidgetFamily::systemSmall, WidgetFamily::systemMedium,
                              WidgetFamily::systemLarge, WidgetFamily::accessoryCircular,
                              WidgetFamily::accessoryRectangular, WidgetFamily::accessoryInline}) {
        const auto view = MoonEventWidgetEntryView{entry, {.family = family}}.body();
        EXPECT_EQ(render(view, {170, 170}, kContext).commands.empty(),
                  family != WidgetFamily::systemSmall)
            << familyName(family);
    }
}

TEST(SmallMoonEventView, NamesTheNextPhaseOrTodaysEclipseBesideTheDate) {
    const auto eclipse = [](bool visible) {
        return std::make_shared<const EclipseEvent>(EclipseEvent{.key = "TLE",
                                                                 .title = "Total Lunar Eclipse",
                                                                 .datetime = kNoon,
                                                                 .isLunarEvent = true,
                                                                 .isVisible = visible});
    };
    struct Case {
        bool knowsNextPhase;
        std::shared_ptr<const EclipseEvent> eclipse;
        std::string what;
        std::string when;
    };
    for (const auto& [knowsNextPhase, eclipseInfo, what, when] :
         {Case{true, nullptr, "Full Moon", "in 7 days"}, Case{false, nullptr, "Next phase", "--"},
          Case{true, eclipse(true), "Total Lunar Eclipse", "Visible today"},
          Case{true, eclipse(false), "Total Lunar Eclipse", "Not visible here"}}) {
        auto data = MoonWidgetData::placeholder(kNoon);
        if (!knowsNextPhase) {
            data.nextMoonPhase.reset();
            data.nextPhaseTime.reset();
        }
        data.eclipseInfo = eclipseInfo;
        data.moonset.reset();
        const auto shown = all<DrawText>(eventView(data));
        const auto& month = shown.at(0);
        const auto& first = shown.at(2);
        const auto& second = shown.at(3);
        EXPECT_EQ(first.text, what);
        EXPECT_EQ(second.text, when);
        EXPECT_DOUBLE_EQ(first.frame.y, month.frame.y - 2);
        EXPECT_DOUBLE_EQ(second.frame.y, first.frame.maxY() + 3);
        EXPECT_EQ(second.font, Font::system(11, FontWeight::medium));
        EXPECT_EQ(shown.back().text, "--:--");
    }
}

TEST(SmallMoonEventView, APrincipalPhaseDayNamesThePhaseOnceAndSaysWhetherItIsEclipsed) {
    auto data = MoonWidgetData::placeholder(kNoon);
    data.currentMoonPhase = data.nextMoonPhase;
    data.nextPhaseTime = "today";
    const auto shown = texts(eventView(data));
    EXPECT_EQ(shown.at(2), "Full Moon today");
    EXPECT_EQ(shown.at(3), "No eclipse");
}

// Every eclipse title seen or not, and each principal phase from its own day to weeks ahead:
// in each language the event lines shrink to fit whole rather than lose their ends.
TEST(SmallMoonEventView, EventLinesFitWholeInEveryLanguage) {
    const ui::PangoTextMeasurer measurer;
    const LayoutContext context{measurer, {.contentMargin = 16}};
    const auto expectWhole = [&](const MoonWidgetData& data, const char* locale) {
        const SmallMoonEventView view{testing::drawnEntry(kNoon, data, locale), 36, 42};
        const auto shown = all<DrawText>(render(view.body(), {170, 170}, context));
        for (const auto& line : {shown.at(2), shown.at(3)}) {
            EXPECT_FALSE(
                measurer.measure(line.text, line.font, line.frame.width, line.maxLines).truncated)
                << locale << ": " << line.text;
        }
    };
    for (const char* locale : {"de_DE", "fr_FR", "es_ES", "it_IT", "pt_BR", "pl_PL", "ja_JP"}) {
        l10n::useLanguage(locale);
        for (const char* key : {"TLE", "PLE", "NLE", "TSE", "PSE", "ASE", "HSE"}) {
            for (const bool visible : {true, false}) {
                auto data = MoonWidgetData::placeholder(kNoon);
                data.eclipseInfo = std::make_shared<const EclipseEvent>(
                    EclipseEvent{.key = key, .title = *eclipseTitle(key), .isVisible = visible});
                expectWhole(data, locale);
            }
        }
        for (const auto phase : {Solar::PhaseType::newMoon, Solar::PhaseType::firstQuarter,
                                 Solar::PhaseType::fullMoon, Solar::PhaseType::lastQuarter}) {
            for (const int daysUntil : {0, 1, 2, 5, 22}) {
                auto data = MoonWidgetData::placeholder(kNoon);
                data.nextMoonPhase->phaseType = phase;
                data.nextMoonPhase->phaseName = std::string(Solar::rawValue(phase));
                if (daysUntil == 0) data.currentMoonPhase = data.nextMoonPhase;
                data.nextPhaseTime = nextPhaseText(daysUntil);
                expectWhole(data, locale);
            }
        }
    }
    l10n::useLanguage("en_US");
}

TEST(SmallMoonEventView, ShowsThePlaceholderOrThePermissionPrompt) {
    EXPECT_EQ(symbols(eventView(std::nullopt)).at(0), "moon.fill");
    EXPECT_EQ(texts(eventView(std::nullopt)).at(0), "Open Lunoval");
    EXPECT_EQ(symbols(eventView(MoonWidgetData::permissionNeeded("UTC", kNoon))).at(0),
              "location.slash.fill");
}

}  // namespace
}  // namespace lunoval
