#include "ui/rendering_mode.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace lunoval::ui {
namespace {

constexpr Color kCyan{0.39, 0.82, 1, 0.5};
constexpr Color kOrange{1, 0.62, 0.04, 1};

// One command of every kind that carries a colour, all in `color`.
DisplayList everyKind(Color color) {
    const auto stops = evenlySpaced({color, color});
    return {{100, 100},
            {BeginGroup{.isLayer = true}, FillPath{Path::rectangle({0, 0, 10, 10}), color},
             FillPath{Path::rectangle({0, 0, 10, 10}), LinearGradient{stops, {0, 0}, {10, 0}}},
             StrokePath{Path::line({0, 0}, {5, 5}), RadialGradient{stops, {5, 5}, 0, 5}},
             DrawText{.frame = {0, 0, 50, 20}, .text = "Moon", .color = color},
             DrawSymbol{.frame = {0, 0, 10, 10}, .name = "moon.fill", .color = color}, EndGroup{}},
            "lunoval://moon"};
}

struct ModeCase {
    RenderingMode mode;
    Color expected;
};

class RenderingModes : public ::testing::TestWithParam<ModeCase> {};

TEST_P(RenderingModes, MapEveryColourOfEveryCommand) {
    const DisplayList mapped = applyRenderingMode(everyKind(kCyan), GetParam().mode, kOrange);
    const DisplayList expected = everyKind(GetParam().expected);
    ASSERT_EQ(mapped.commands.size(), expected.commands.size());
    for (std::size_t i = 0; i < expected.commands.size(); ++i) {
        EXPECT_EQ(mapped.commands[i], expected.commands[i]) << "command " << i;
    }
    EXPECT_EQ(mapped.widgetURL, expected.widgetURL);
}

constexpr double kCyanAlpha = (0.2126 * 0.39 + 0.7152 * 0.82 + 0.0722 * 1) * 0.5;

INSTANTIATE_TEST_SUITE_P(RenderingMode, RenderingModes,
                         ::testing::Values(ModeCase{RenderingMode::fullColor, kCyan},
                                           ModeCase{RenderingMode::vibrant, {1, 1, 1, kCyanAlpha}},
                                           ModeCase{RenderingMode::accented,
                                                    {1, 0.62, 0.04, kCyanAlpha}}));

TEST(RenderingModes, LeaveWhatErasesAsItIs) {
    const FillPath erase{Path::rectangle({0, 0, 10, 10}), Color::black(), FillRule::nonZero,
                         BlendMode::destinationOut};
    const FillPath insideAnErasingLayer{Path::rectangle({0, 0, 5, 5}), Color::black()};
    const DisplayList list{
        {10, 10},
        {erase, BeginGroup{.isLayer = true, .blendMode = BlendMode::destinationOut},
         insideAnErasingLayer, EndGroup{}, insideAnErasingLayer}};
    const auto mapped = applyRenderingMode(list, RenderingMode::vibrant, kOrange);
    EXPECT_EQ(mapped.commands[0], list.commands[0]);
    EXPECT_EQ(mapped.commands[2], list.commands[2]);
    // After the layer closes, black is mapped again: white with no luminance.
    EXPECT_EQ(std::get<Color>(std::get<FillPath>(mapped.commands[4]).paint).alpha, 0);
}

}  // namespace
}  // namespace lunoval::ui
