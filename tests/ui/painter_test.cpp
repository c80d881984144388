#include "ui/painter.hpp"

#include <gtest/gtest.h>

#include <numbers>
#include <vector>

#include "ui/raster.hpp"

namespace lunoval::ui {
namespace {

using testing::inkBox;
using testing::Raster;
using testing::rasterize;

constexpr Color kRed{1, 0, 0, 1};
constexpr Color kBlue{0, 0, 1, 1};
constexpr std::uint32_t kOpaqueRed = 0xffff0000;
constexpr std::uint32_t kOpaqueBlue = 0xff0000ff;

FillPath fillRect(Rect rect, Color color = kRed) {
    return {Path::rectangle(rect), color};
}

// Every pixel is `inside` where `covered` says so and `outside` elsewhere.
template <typename Covered>
void expectCoverage(const Raster& raster, std::uint32_t inside, Covered covered,
                    std::uint32_t outside = 0) {
    for (int y = 0; y < raster.height(); ++y) {
        for (int x = 0; x < raster.width(); ++x) {
            ASSERT_EQ(raster.pixel(x, y), covered(x, y) ? inside : outside) << x << "," << y;
        }
    }
}

TEST(Painter, AFilledRectangleCoversExactlyItsPixelsAtTheDisplayScale) {
    const Raster raster = rasterize({10, 10}, {fillRect({1, 2, 3, 4})}, 3);
    ASSERT_EQ(raster.width(), 30);
    expectCoverage(raster, kOpaqueRed,
                   [](int x, int y) { return x >= 3 && x < 12 && y >= 6 && y < 18; });
}

TEST(Painter, AClipConfinesTheGroupsFillsAndEndsWithIt) {
    const Raster raster =
        rasterize({10, 10}, {BeginGroup{.clip = Path::rectangle({0, 0, 5, 10})},
                             fillRect({0, 0, 10, 5}), EndGroup{}, fillRect({0, 5, 10, 5})});
    expectCoverage(raster, kOpaqueRed, [](int x, int y) { return x < 5 || y >= 5; });
}

TEST(Painter, ATransformMapsAsItsCoefficientsSay) {
    // x' = 10 - y, y' = x: a quarter turn whose off-diagonal terms differ in sign.
    const BeginGroup turned{.transform = {0, 1, -1, 0, 10, 0}};
    const Raster raster = rasterize({12, 12}, {turned, fillRect({1, 0, 2, 1}), EndGroup{}});
    expectCoverage(raster, kOpaqueRed, [](int x, int y) { return x == 9 && (y == 1 || y == 2); });
}

TEST(Painter, AnEraseCutsOnlyWhatItsLayerDrewAndAnErasingLayerCutsWhatLiesBelow) {
    const FillPath erase{.path = Path::rectangle({2, 2, 4, 4}),
                         .paint = Color::black(),
                         .blendMode = BlendMode::destinationOut};
    expectCoverage(
        rasterize({10, 10}, {fillRect({0, 0, 10, 10}, kBlue), BeginGroup{.isLayer = true},
                             fillRect({0, 0, 10, 10}), erase, EndGroup{}}),
        kOpaqueBlue, [](int x, int y) { return x >= 2 && x < 6 && y >= 2 && y < 6; }, kOpaqueRed);
    expectCoverage(
        rasterize({10, 10}, {fillRect({0, 0, 10, 10}, kBlue),
                             BeginGroup{.isLayer = true, .blendMode = BlendMode::destinationOut},
                             fillRect({0, 0, 4, 10}), EndGroup{}}),
        kOpaqueBlue, [](int x, int) { return x >= 4; });
}

TEST(Painter, ALayersOpacityAppliesToItsContentsAsOne) {
    const Raster raster =
        rasterize({10, 10}, {BeginGroup{.isLayer = true, .opacity = 0.5}, fillRect({0, 0, 6, 10}),
                             fillRect({4, 0, 6, 10}), EndGroup{}});
    for (const int x : {1, 5, 8}) {
        EXPECT_NEAR(raster.alpha(x, 5), 128, 1) << x;
        EXPECT_EQ(raster.red(x, 5), raster.alpha(x, 5)) << x;
    }
}

TEST(Painter, ADashedStrokeLeavesGapsAndADashCairoCannotTakeDrawsSolid) {
    const StrokePath dashed{Path::line({0, 5}, {20, 5}), kRed, {.lineWidth = 2, .dash = {2, 2}}};
    expectCoverage(rasterize({20, 10}, {dashed}), kOpaqueRed,
                   [](int x, int y) { return (y == 4 || y == 5) && (x / 2) % 2 == 0; });
    // What follows the refused dash still draws.
    const StrokePath zeros{Path::line({0, 5}, {20, 5}), kRed, {.lineWidth = 2, .dash = {0, 0}}};
    expectCoverage(rasterize({20, 10}, {zeros, fillRect({0, 0, 1, 1})}), kOpaqueRed,
                   [](int x, int y) { return y == 4 || y == 5 || (x == 0 && y == 0); });
}

TEST(Painter, AnEllipseAndARectangleUniteOrCancelWhereTheyOverlapByTheFillRule) {
    const Path path = Path::ellipse({0, 0, 10, 10}).addRectangle({5, 0, 5, 10});
    for (const auto& [rule, overlap] :
         {std::pair{FillRule::nonZero, kOpaqueRed}, {FillRule::evenOdd, 0u}}) {
        const Raster raster = rasterize({10, 10}, {FillPath{path, kRed, rule}});
        EXPECT_EQ(raster.pixel(2, 5), kOpaqueRed);  // ellipse only
        EXPECT_EQ(raster.pixel(9, 0), kOpaqueRed);  // rectangle only
        EXPECT_EQ(raster.pixel(7, 5), overlap);
    }
}

// Each shape is united with a rectangle across it, so a reversed winding would show as a hole.
TEST(Painter, ShapesOfNegativeExtentAreTheirAbsoluteOnes) {
    const auto png = [](const Path& shape) {
        const Path path = Path(shape).addRectangle({4, 4, 4, 4});
        return encodeImage({{12, 12}, {FillPath{path, kRed}}}, {}, ImageFormat::png);
    };
    EXPECT_EQ(png(Path::ellipse({8, 2, -6, 5})), png(Path::ellipse({2, 2, 6, 5})));
    EXPECT_EQ(png(Path::ellipse({2, 9, 6, -7})), png(Path::ellipse({2, 2, 6, 7})));
    EXPECT_EQ(png(Path::rectangle({9, 8, -7, -5})), png(Path::rectangle({2, 3, 7, 5})));
    EXPECT_EQ(png(Path::rectangle({9, 3, -7, 5})), png(Path::rectangle({2, 3, 7, 5})));
}

TEST(Painter, AnArcTurnsClockwiseFromItsStartAngle) {
    const Path quadrant = Path().moveTo({5, 5}).arc({5, 5}, 5, 0, std::numbers::pi / 2).close();
    const Raster raster = rasterize({10, 10}, {FillPath{quadrant, kRed}});
    EXPECT_EQ(raster.pixel(7, 7), kOpaqueRed);
    EXPECT_EQ(raster.pixel(7, 2), 0u);
    EXPECT_EQ(raster.pixel(2, 7), 0u);
}

TEST(Painter, GradientsRunBetweenTheirEndsAndPadBeyond) {
    const auto stops = evenlySpaced({kRed, kBlue});
    const Raster linear = rasterize({20, 1}, {FillPath{Path::rectangle({0, 0, 20, 1}),
                                                       LinearGradient{stops, {2, 0}, {10, 0}}}});
    EXPECT_EQ(linear.pixel(0, 0), kOpaqueRed);
    EXPECT_NEAR(linear.red(6, 0), 112, 4);  // 4.5 of 8 points from red to blue
    EXPECT_EQ(linear.pixel(15, 0), kOpaqueBlue);

    const Raster radial = rasterize({20, 20}, {FillPath{Path::rectangle({0, 0, 20, 20}),
                                                        RadialGradient{stops, {10, 10}, 0, 6}}});
    EXPECT_NEAR(radial.red(10, 10), 225, 4);  // 0.71 of 6 points out
    EXPECT_NEAR(radial.red(13, 10), 105, 4);  // 3.54 of 6 points out
    EXPECT_EQ(radial.pixel(19, 19), kOpaqueBlue);
}

TEST(Painter, DegenerateShapesAndGroupsDrawNothing) {
    const std::vector<std::vector<Command>> cases{
        {FillPath{Path::ellipse({2, 2, 0, 5}), kRed}},
        {FillPath{Path::ellipse({2, 2, 5, -0.0}), kRed}},
        {StrokePath{Path::line({0, 5}, {10, 5}), kRed, {.lineWidth = 0}}},
        {BeginGroup{.transform = {0, 0, 0, 0, 5, 5}}, fillRect({0, 0, 10, 10}), BeginGroup{},
         fillRect({0, 0, 10, 10}), EndGroup{}, EndGroup{}},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_TRUE(inkBox(rasterize({10, 10}, cases[i])).empty()) << "case " << i;
    }
}

TEST(Painter, UnbalancedGroupsAreClosedAndIgnored) {
    const Raster raster = rasterize(
        {10, 10},
        {EndGroup{}, BeginGroup{.isLayer = true, .opacity = 0.5}, fillRect({0, 0, 10, 10})});
    EXPECT_NEAR(raster.alpha(5, 5), 128, 1);
}

}  // namespace
}  // namespace lunoval::ui
