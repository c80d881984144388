#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "display_list_queries.hpp"
#include "fake_text_measurer.hpp"
#include "ui/view.hpp"

namespace lunoval::ui {
namespace {

using testing::all;

const testing::FakeTextMeasurer kMeasurer;
const LayoutContext kContext{kMeasurer, {}};

// A box of fixed size whose placement shows as its canvas's translation.
View box(double width, double height) {
    return Canvas([](GraphicsContext& /*context*/) {}).frame(width, height);
}

std::vector<Point> boxOrigins(const DisplayList& list) {
    std::vector<Point> origins;
    for (const auto& command : list.commands) {
        if (const auto* group = std::get_if<BeginGroup>(&command);
            group && !group->isLayer && group->clip) {
            origins.push_back({group->transform.tx, group->transform.ty});
        }
    }
    return origins;
}

TEST(StackLayout, FixedChildrenTakeTheirSizeAndSpacersShareTheRest) {
    const auto row = HStack(VerticalAlignment::center, 8, {box(20, 10), Spacer(), box(30, 20)});
    EXPECT_EQ(row.sizeThatFits({100, 40}, kContext), (Size{100, 20}));
    const auto list = render(row.frame(100, 20), {100, 20}, kContext);
    EXPECT_EQ(boxOrigins(list), (std::vector<Point>{{0, 5}, {70, 0}}));
}

TEST(StackLayout, CrossAlignmentPlacesNarrowerChildren) {
    struct Case {
        HorizontalAlignment alignment;
        double expectedX;
    };
    for (const auto& [alignment, expectedX] :
         {Case{HorizontalAlignment::leading, 0}, Case{HorizontalAlignment::center, 15},
          Case{HorizontalAlignment::trailing, 30}}) {
        const auto column = VStack(alignment, 4, {box(50, 10), box(20, 10)});
        const auto list = render(column, {50, 24}, kContext);
        EXPECT_EQ(boxOrigins(list), (std::vector<Point>{{0, 0}, {expectedX, 14}}));
    }
}

TEST(StackLayout, FlexibleChildrenShareWhatTheFixedOnesLeave) {
    const auto wide = box(10, 10).frame({.maxWidth = 1e9});
    const auto row = HStack(VerticalAlignment::top, 0, {wide, box(40, 10), wide});
    const auto list = render(row, {100, 10}, kContext);
    EXPECT_EQ(boxOrigins(list), (std::vector<Point>{{10, 0}, {30, 0}, {80, 0}}));
}

TEST(TextLayout, ShrinksToTheMinimumScaleBeforeCutting) {
    struct Case {
        double offered;
        double fontSize;
    };
    // Ten characters at 10 points are 50 points wide.
    for (const auto& [offered, fontSize] : {Case{60, 10}, Case{40, 8}, Case{20, 6}}) {
        const View text = Text("abcdefghij").font(Font::system(10)).minimumScaleFactor(0.6);
        const auto list = render(text.frame(offered, 20), {offered, 20}, kContext);
        const auto drawn = all<DrawText>(list);
        ASSERT_EQ(drawn.size(), 1u);
        EXPECT_NEAR(drawn[0].font.size, fontSize, 0.01) << offered;
        EXPECT_LE(drawn[0].frame.width, offered);
    }
}

TEST(TextLayout, WrapsCentredUpToItsLineLimit) {
    const View text = Text("abcdefghijklmnopqrst")
                          .font(Font::system(10))
                          .lineLimit(2)
                          .multilineTextAlignment(TextAlignment::center);
    const auto size = text.sizeThatFits({30, std::nullopt}, kContext);
    EXPECT_EQ(size, (Size{30, 24}));
    const auto drawn = all<DrawText>(render(text, {30, 40}, kContext));
    EXPECT_EQ(drawn[0].maxLines, 2);
    EXPECT_EQ(drawn[0].alignment, TextAlignment::center);
    EXPECT_EQ(drawn[0].frame, (Rect{0, 8, 30, 24}));
}

TEST(Modifiers, PaddingAndFramesPlaceTheirChild) {
    const auto padded = box(10, 10).padding({.top = 4, .leading = 6, .bottom = 0, .trailing = 0});
    EXPECT_EQ(padded.sizeThatFits({}, kContext), (Size{16, 14}));
    const auto framed = box(10, 10).frame(40, 30, Alignment::topLeading).padding(5);
    EXPECT_EQ(boxOrigins(render(framed, {50, 40}, kContext)), (std::vector<Point>{{5, 5}}));
    const auto greedy = box(10, 10).frame({.maxWidth = 1e9, .alignment = Alignment::leading});
    EXPECT_EQ(greedy.sizeThatFits({120, 50}, kContext), (Size{120, 10}));
}

TEST(Modifiers, RotationTurnsAboutTheFrameCentre) {
    const auto turned = box(20, 10).rotationEffect(std::numbers::pi / 2);
    const auto groups = all<BeginGroup>(render(turned, {20, 10}, kContext));
    const auto turn = groups.front().transform;
    const auto corner = turn.apply({0, 0});
    EXPECT_NEAR(corner.x, 15, 1e-9);
    EXPECT_NEAR(corner.y, -5, 1e-9);
    EXPECT_EQ(turn.apply({10, 5}).x, 10);
}

TEST(Modifiers, ContainerBackgroundFillsTheWidgetInsideTheMargin) {
    const auto widget = box(10, 10)
                            .containerBackground(Canvas([](GraphicsContext& /*context*/) {}))
                            .widgetURL("lunoval://settings");
    const LayoutContext withMargin{kMeasurer, {.contentMargin = 16}};
    const auto list = render(widget, {170, 100}, withMargin);
    EXPECT_EQ(boxOrigins(list), (std::vector<Point>{{0, 0}, {80, 45}}));
    EXPECT_EQ(list.widgetURL, "lunoval://settings");
    const auto greedy = Canvas([](GraphicsContext& /*context*/) {}).containerBackground(View{});
    EXPECT_EQ(boxOrigins(render(greedy, {170, 100}, withMargin)), (std::vector<Point>{{16, 16}}));
}

TEST(Modifiers, ACompositingGroupKeepsErasingInside) {
    const auto erased = box(10, 10).blendMode(BlendMode::destinationOut);
    const auto groups = all<BeginGroup>(render(
        ZStack(Alignment::center, {box(20, 20), erased}).compositingGroup(), {20, 20}, kContext));
    ASSERT_EQ(groups.size(), 4u);
    EXPECT_TRUE(groups[0].isLayer);
    EXPECT_EQ(groups[0].blendMode, BlendMode::normal);
    EXPECT_EQ(groups[2].blendMode, BlendMode::destinationOut);
}

TEST(Symbols, AnUnknownNameDrawsNothingAndWarnsOnce) {
    ::testing::internal::CaptureStdout();
    const View known = Symbol("moon.fill").font(Font::system(20));
    const View unknown = Symbol("moon.sparkles").font(Font::system(20));
    const auto list =
        render(HStack(VerticalAlignment::center, 0, {known, unknown}), {100, 40}, kContext);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "⚠️ Widget: No symbol named \"moon.sparkles\"\n");
    const auto symbols = all<DrawSymbol>(list);
    ASSERT_EQ(symbols.size(), 1u);
    EXPECT_EQ(symbols[0].name, "moon.fill");
    EXPECT_NEAR(symbols[0].frame.height, 23, 1e-9);
}

}  // namespace
}  // namespace lunoval::ui
