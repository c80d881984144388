#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "display_list_queries.hpp"
#include "fake_text_measurer.hpp"
#include "ui/pango_text_measurer.hpp"
#include "ui/view.hpp"

namespace lunoval::ui {
namespace {

using testing::all;

const testing::FakeTextMeasurer kMeasurer;
// The margin applies only inside a container background.
const LayoutContext kContext{kMeasurer, {.contentMargin = 16}};

View canvas() {
    return Canvas([](GraphicsContext& /*context*/) {});
}

// A box of fixed size whose placement shows as its canvas's clip.
View box(double width, double height) {
    return canvas().frame(width, height);
}

std::vector<Point> boxOrigins(const DisplayList& list) {
    std::vector<Point> found;
    for (const auto& group : all<BeginGroup>(list)) {
        if (!group.isLayer && group.clip) found.push_back({group.transform.tx, group.transform.ty});
    }
    return found;
}

// Each child answers the size it is offered, and its parent places it by that answer.
TEST(Layout, ProposalsAnswersAndPlacements) {
    const auto row = HStack(VerticalAlignment::center, 8, {box(20, 10), Spacer(), box(30, 20)});
    const auto wide = box(10, 10).frame({.maxWidth = 1e9});
    const auto spread = HStack(VerticalAlignment::top, 0, {wide, box(40, 10), wide});
    // Twenty characters of 5 points wrap into two lines of six.
    const View text = Text("abcdefghijklmnopqrst").font(Font::system(10)).lineLimit(2);
    const std::tuple<View, ProposedSize, Size> answers[] = {
        {row, {100, 40}, {100, 20}},
        {box(10, 10).padding({.top = 4, .leading = 6, .bottom = 0, .trailing = 0}), {}, {16, 14}},
        {wide, {120, 50}, {120, 10}},
        {text, {30, std::nullopt}, {30, 24}},
    };
    for (const auto& [view, offer, size] : answers)
        EXPECT_EQ(view.sizeThatFits(offer, kContext), size);
    // A symbol with no drawing draws nothing.
    EXPECT_TRUE(render(Symbol("moon.sparkles"), {20, 20}, kContext).commands.empty());
    const auto column = [](HorizontalAlignment alignment) {
        return VStack(alignment, 4, {box(50, 10), box(20, 10)});
    };
    const std::tuple<View, Size, std::vector<Point>> placements[] = {
        {row, {100, 20}, {{0, 5}, {70, 0}}},
        {column(HorizontalAlignment::center), {50, 24}, {{0, 0}, {15, 14}}},
        {column(HorizontalAlignment::trailing), {50, 24}, {{0, 0}, {30, 14}}},
        {spread, {100, 10}, {{10, 0}, {30, 0}, {80, 0}}},
        {box(10, 10).frame(40, 30, Alignment::topLeading).padding(5), {50, 40}, {{5, 5}}},
        // The background fills the widget; the content keeps inside the margin.
        {box(10, 10).containerBackground(canvas()), {170, 100}, {{0, 0}, {80, 45}}},
        {canvas().containerBackground(View{}), {170, 100}, {{16, 16}}},
    };
    for (const auto& [view, size, origins] : placements) {
        EXPECT_EQ(boxOrigins(render(view, size, kContext)), origins);
    }
}

TEST(Layout, TextShrinksToItsMinimumScaleBeforeItIsCut) {
    // Ten characters at 10 points are 50 points wide.
    for (const auto& [offered, fontSize] : {std::pair{60.0, 10.0}, {40.0, 8.0}, {20.0, 6.0}}) {
        const View text = Text("abcdefghij").font(Font::system(10)).minimumScaleFactor(0.6);
        const auto drawn = all<DrawText>(render(text.frame(offered, 20), {offered, 20}, kContext));
        ASSERT_EQ(drawn.size(), 1u);
        EXPECT_NEAR(drawn[0].font.size, fontSize, 0.01) << offered;
        EXPECT_LE(drawn[0].frame.width, offered);
    }
}

// Wrapping alone never cuts; a line limit cuts with an ellipsis and says so.
TEST(Text, MeasuringSaysWhetherTheTextIsCut) {
    const PangoTextMeasurer measurer;
    const std::string phrase = "Waxing Gibbous tonight";
    const Size line = measurer.measure(phrase, Font::system(17), {}, 0).size;
    const double narrow = 0.4 * line.width;
    const double infinite = std::numeric_limits<double>::infinity();
    struct Case {
        std::optional<double> maxWidth;
        int maxLines, lines;
        bool truncated;
    };
    for (const auto& [maxWidth, maxLines, lines, truncated] :
         {Case{0.7 * line.width, 0, 2, false}, Case{narrow, 1, 1, true}, Case{narrow, 2, 2, true},
          Case{line.width, 1, 1, false}, Case{{}, 1, 1, false}, Case{infinite, 1, 1, false}}) {
        const auto result = measurer.measure(phrase, Font::system(17), maxWidth, maxLines);
        SCOPED_TRACE(::testing::Message() << maxWidth.value_or(-1) << " wide, " << maxLines);
        EXPECT_EQ(result.truncated, truncated);
        EXPECT_NEAR(result.size.height, lines * line.height, 0.5);
        EXPECT_LE(result.size.width, maxWidth.value_or(line.width));
    }
    // Too narrow even for the ellipsis.
    EXPECT_TRUE(measurer.measure(phrase, Font::system(17), 1.0, 1).truncated);
}

}  // namespace
}  // namespace lunoval::ui
