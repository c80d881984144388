#include <gtest/gtest.h>

#include "display_list_queries.hpp"
#include "fake_text_measurer.hpp"
#include "views/widget_container.hpp"

namespace lunoval {
namespace {

using namespace ui;
using testing::all;
using testing::texts;
using widgetkit::WidgetFamily;

const testing::FakeTextMeasurer kMeasurer;
const LayoutContext kContext{kMeasurer, {}};

DisplayList container(std::optional<MoonWidgetData> data, WidgetFamily family, Size size) {
    const WidgetContainer view{
        .entry = {.date = Date::fromTimeIntervalSince1970(0), .widgetData = std::move(data)},
        .widgetFamily = family,
        .content = [] { return View(Text("content")); }};
    return render(view.body(), size, kContext);
}

TEST(WidgetContainer, AsksForLocationWhenPermissionIsNeeded) {
    const auto needsPermission =
        MoonWidgetData::permissionNeeded("Europe/Paris", Date::fromTimeIntervalSince1970(0));
    // The container ignores the family, so one stands for all.
    const Size size{364, 170};
    const auto list = container(needsPermission, WidgetFamily::systemMedium, size);
    EXPECT_EQ(texts(list),
              (std::vector<std::string>{"Location Access Required", "Tap to open Settings"}));
    EXPECT_EQ(all<DrawSymbol>(list).at(0).name, "location.slash.fill");
    EXPECT_EQ(list.widgetURL, "lunoval://settings");
    // The prompt's backdrop covers the whole widget.
    const auto backdrop = std::get<Path::Rectangle>(all<FillPath>(list).at(0).path.elements[0]);
    EXPECT_EQ(backdrop.rect.size(), size);
}

TEST(WidgetContainer, ShowsTheContentOtherwiseEvenWithoutData) {
    for (const auto& data :
         {std::optional<MoonWidgetData>{},
          std::optional{MoonWidgetData::placeholder(Date::fromTimeIntervalSince1970(0))}}) {
        const auto list = container(data, WidgetFamily::systemSmall, {170, 170});
        EXPECT_EQ(texts(list), std::vector<std::string>{"content"});
        EXPECT_FALSE(list.widgetURL.has_value());
    }
}

TEST(WidgetPermissionView, StacksSymbolAndTextsWithTheirFonts) {
    const auto list = render(WidgetPermissionView{}.body(), {170, 170}, kContext);
    const auto symbol = all<DrawSymbol>(list).at(0);
    const auto title = all<DrawText>(list).at(0);
    const auto action = all<DrawText>(list).at(1);
    EXPECT_EQ(symbol.color, systemColor(SystemColor::orange, ColorScheme::dark));
    EXPECT_EQ(title.font, Font::system(13, FontWeight::semibold));
    EXPECT_DOUBLE_EQ(title.color.alpha, 0.9);
    EXPECT_EQ(action.font, Font::system(10, FontWeight::medium));
    // Spacing 6 between the rows, and 2 more above the action.
    EXPECT_DOUBLE_EQ(title.frame.y, symbol.frame.maxY() + 6);
    EXPECT_DOUBLE_EQ(action.frame.y, title.frame.maxY() + 6 + 2);
}

TEST(WidgetBackground, PaintsTheDiagonalGradientAndTheCornerGlow) {
    const auto list = render(WidgetBackground{}.body(), {364, 170}, kContext);
    const auto fills = all<FillPath>(list);
    ASSERT_EQ(fills.size(), 2u);
    const auto diagonal = std::get<LinearGradient>(fills[0].paint);
    EXPECT_EQ(diagonal.end, (Point{364, 170}));
    EXPECT_EQ(diagonal.stops[1], (GradientStop{{0.1, 0.15, 0.3, 1.0}, 0.5}));
    const auto glow = std::get<RadialGradient>(fills[1].paint);
    EXPECT_EQ(glow.center, (Point{0, 0}));
    EXPECT_EQ(glow.startRadius, 10);
    EXPECT_EQ(glow.endRadius, 150);
}

}  // namespace
}  // namespace lunoval
