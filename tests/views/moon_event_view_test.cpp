#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "display_list_queries.hpp"
#include "drawn_entry.hpp"
#include "eclipse/eclipse_event.hpp"
#include "fake_text_measurer.hpp"
#include "timeline/widget_data_builder.hpp"
#include "ui/pango_text_measurer.hpp"
#include "views/moon_event_view.hpp"

namespace lunoval {
namespace {

const Date kNoon = Date::fromTimeIntervalSince1970(1757246400);  // 2025-09-07 12:00 UTC

std::shared_ptr<const EclipseEvent> eclipse(const char* key, bool visible) {
    return std::make_shared<const EclipseEvent>(
        EclipseEvent{.key = key, .title = *eclipseTitle(key), .isVisible = visible});
}

// The event's two lines beside the date, as the small widget draws them.
std::vector<ui::DrawText> eventLines(const MoonWidgetData& data, const ui::TextMeasurer& measurer,
                                     const char* locale = "en_US") {
    const SmallMoonEventView view{testing::drawnEntry(kNoon, data, locale), 36, 42};
    const auto shown = testing::all<ui::DrawText>(
        render(view.body(), {170, 170}, {measurer, {.contentMargin = 16}}));
    return {shown.at(2), shown.at(3)};
}

// A same-day eclipse comes first; on a principal phase's own day the phase takes one line.
TEST(SmallMoonEventView, NamesTheComingPhaseOrTodaysEclipse) {
    struct Case {
        std::shared_ptr<const EclipseEvent> eclipse;
        std::optional<std::string> nextPhaseTime;
        std::string what, when;
    };
    for (const auto& c :
         {Case{nullptr, "in 7 days", "Full Moon", "in 7 days"},
          Case{nullptr, std::nullopt, "Next phase", "--"},
          Case{nullptr, "today", "Full Moon today", "No eclipse"},
          Case{eclipse("TLE", true), "today", "Total Lunar Eclipse", "Visible today"},
          Case{eclipse("PSE", false), "in 7 days", "Partial Solar Eclipse", "Not visible here"}}) {
        auto data = MoonWidgetData::placeholder(kNoon);
        data.eclipseInfo = c.eclipse;
        data.nextPhaseTime = c.nextPhaseTime;
        if (!c.nextPhaseTime) data.nextMoonPhase.reset();
        if (c.nextPhaseTime == "today") data.currentMoonPhase = data.nextMoonPhase;
        const auto lines = eventLines(data, testing::FakeTextMeasurer{});
        EXPECT_EQ(lines[0].text, c.what);
        EXPECT_EQ(lines[1].text, c.when);
    }
}

// Every eclipse title seen or not, and each principal phase from its own day to weeks ahead:
// in each language the event lines shrink to fit whole rather than lose their ends.
TEST(SmallMoonEventView, EventLinesFitWholeInEveryLanguage) {
    const ui::PangoTextMeasurer measurer;
    const auto expectWhole = [&](const MoonWidgetData& data, const char* locale) {
        for (const auto& line : eventLines(data, measurer, locale)) {
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
                data.eclipseInfo = eclipse(key, visible);
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

}  // namespace
}  // namespace lunoval
