#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "display_list_queries.hpp"
#include "drawn_entry.hpp"
#include "fake_text_measurer.hpp"
#include "views/large_lunoval_view.hpp"

namespace lunoval {
namespace {

using namespace ui;
using testing::all;

const testing::FakeTextMeasurer kMeasurer;
const LayoutContext kContext{kMeasurer, {.contentMargin = 16}};

// Noon UTC on 2026-08-01 (a Saturday), 2026-02-01 (a Sunday), 2024-02-10 and 2025-02-10.
constexpr double kAugust2026 = 1785585600;
constexpr double kFebruary2026 = 1769947200;
constexpr double kFebruary2024 = 1707566400;
constexpr double kFebruary2025 = 1739188800;

DisplayList month(double secondsSince1970, ColorScheme scheme = ColorScheme::dark) {
    auto data = MoonWidgetData::placeholder(Date::fromTimeIntervalSince1970(secondsSince1970));
    data.timezone = "Europe/Paris";
    const auto entry = testing::drawnEntry(data.selectedTime, data);
    return render(LargeLunovalView{entry, scheme}.body(), {364, 382}, kContext);
}

double centerX(const DisplayList& list, const std::string& content) {
    const auto texts = all<DrawText>(list);
    return std::ranges::find(texts, content, &DrawText::text)->frame.center().x;
}

long dayCount(const DisplayList& list) {
    return std::ranges::count_if(all<DrawText>(list), [](const DrawText& text) {
        return std::ranges::all_of(text.text, [](char c) { return std::isdigit(c); });
    });
}

TEST(LargeLunovalView, PutsTheFirstOfTheMonthUnderItsWeekday) {
    for (const auto& [instant, weekday] : {std::pair{kAugust2026, "Sa"}, {kFebruary2026, "S"}}) {
        const auto list = month(instant);
        EXPECT_DOUBLE_EQ(centerX(list, "1"), centerX(list, weekday)) << weekday;
    }
}

TEST(LargeLunovalView, HasOneCellPerDayOfTheMonth) {
    EXPECT_EQ(dayCount(month(kFebruary2024)), 29);
    EXPECT_EQ(dayCount(month(kFebruary2025)), 28);
}

TEST(LargeLunovalView, MarksThePrincipalPhasesWithInverseSymbolsInTheLightScheme) {
    const auto dark = all<DrawSymbol>(month(kAugust2026));
    const auto light = all<DrawSymbol>(month(kAugust2026, ColorScheme::light));
    ASSERT_EQ(dark.size(), 4u);
    ASSERT_EQ(light.size(), dark.size());
    EXPECT_EQ(dark.front().name, "moonphase.last.quarter");
    for (std::size_t i = 0; i < dark.size(); ++i) {
        EXPECT_EQ(light[i].name, dark[i].name + ".inverse");
    }
}

}  // namespace
}  // namespace lunoval
