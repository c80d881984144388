#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "ui/painter.hpp"
#include "ui/pango_layout.hpp"
#include "ui/pango_text_measurer.hpp"
#include "ui/raster.hpp"

namespace lunoval::ui {
namespace {

using testing::inkBox;
using testing::rasterize;

const PangoTextMeasurer kMeasurer;
constexpr Font kBody = Font::system(17);
const std::string kPhrase = "Waxing Gibbous tonight";

Size measured(const std::string& text, Font font = kBody, std::optional<double> maxWidth = {},
              int maxLines = 0) {
    return kMeasurer.measure(text, font, maxWidth, maxLines).size;
}

struct WeightCase {
    FontWeight weight;
    int fontWeight;
};

class Weights : public ::testing::TestWithParam<WeightCase> {};

TEST_P(Weights, ResolveToInterAtTheirOwnWeight) {
    const LayoutHandle layout = layOutText("Moon", Font::system(17, GetParam().weight), {});
    const auto* run =
        static_cast<PangoGlyphItem*>(pango_layout_get_line_readonly(layout.get(), 0)->runs->data);
    PangoFontDescription* used = pango_font_describe(run->item->analysis.font);
    EXPECT_STREQ(pango_font_description_get_family(used), "Inter");
    EXPECT_EQ(pango_font_description_get_weight(used), GetParam().fontWeight);
    pango_font_description_free(used);
}

INSTANTIATE_TEST_SUITE_P(TextMeasure, Weights,
                         ::testing::Values(WeightCase{FontWeight::regular, 400},
                                           WeightCase{FontWeight::medium, 500},
                                           WeightCase{FontWeight::semibold, 600},
                                           WeightCase{FontWeight::bold, 700}));

TEST(TextMeasure, HeavierWeightsAreWider) {
    double previous = 0;
    for (const auto weight :
         {FontWeight::regular, FontWeight::medium, FontWeight::semibold, FontWeight::bold}) {
        const double width = measured(kPhrase, Font::system(17, weight)).width;
        EXPECT_GT(width, previous) << static_cast<int>(weight);
        previous = width;
    }
}

TEST(TextMeasure, SizesAreInPointsAndScaleWithTheFont) {
    const Size body = measured(kPhrase);
    const Size twice = measured(kPhrase, Font::system(34));
    EXPECT_GT(body.height, 17 * 1.1);
    EXPECT_LT(body.height, 17 * 1.35);
    EXPECT_NEAR(twice.width, 2 * body.width, 0.01 * body.width);
    EXPECT_NEAR(twice.height, 2 * body.height, 0.01 * body.height);
}

TEST(TextMeasure, WrapsToANarrowWidthWithoutCutting) {
    const Size line = measured(kPhrase);
    const TextMeasurement wrapped = kMeasurer.measure(kPhrase, kBody, line.width / 2, 0);
    EXPECT_FALSE(wrapped.truncated);
    EXPECT_LE(wrapped.size.width, line.width / 2);
    EXPECT_GE(wrapped.size.height, 2 * line.height);
}

struct LimitCase {
    std::optional<double> widthFactor;  // of the text's own width; unbounded when absent
    int maxLines;
    int lines;
    bool truncated;
};

class LineLimits : public ::testing::TestWithParam<LimitCase> {};

TEST_P(LineLimits, CutToTheLimitWithAnEllipsisAndSaySo) {
    const auto [factor, maxLines, lines, truncated] = GetParam();
    const Size line = measured(kPhrase);
    std::optional<double> maxWidth;
    if (factor) maxWidth = *factor * line.width;
    const TextMeasurement result = kMeasurer.measure(kPhrase, kBody, maxWidth, maxLines);
    EXPECT_EQ(result.truncated, truncated);
    EXPECT_NEAR(result.size.height, lines * line.height, 0.5);
    if (maxWidth && *maxWidth < line.width) {
        EXPECT_LE(result.size.width, *maxWidth);
    }
}

INSTANTIATE_TEST_SUITE_P(
    TextMeasure, LineLimits,
    ::testing::Values(LimitCase{0.4, 1, 1, true}, LimitCase{0.4, 2, 2, true},
                      LimitCase{1.0, 1, 1, false}, LimitCase{std::nullopt, 1, 1, false},
                      LimitCase{std::numeric_limits<double>::infinity(), 1, 1, false}));

TEST(TextMeasure, AWidthTooNarrowEvenForTheEllipsisIsTruncated) {
    EXPECT_TRUE(kMeasurer.measure(kPhrase, kBody, 1.0, 1).truncated);
}

TEST(TextMeasure, TheSameTextAlwaysMeasuresTheSame) {
    const TextMeasurement first = kMeasurer.measure(kPhrase, kBody, 60.0, 2);
    (void)measured("Something else entirely", Font::system(28, FontWeight::bold));
    const TextMeasurement again = kMeasurer.measure(kPhrase, kBody, 60.0, 2);
    EXPECT_EQ(again.size, first.size);
    EXPECT_EQ(again.truncated, first.truncated);
}

struct TextCase {
    std::optional<double> maxWidth;
    int maxLines;
};

class TextInFrame : public ::testing::TestWithParam<TextCase> {};

// The frame is what measuring gave, so any wrap or overflow the painter adds shows as ink outside.
TEST_P(TextInFrame, InkStaysInsideTheMeasuredFrame) {
    const auto [maxWidth, maxLines] = GetParam();
    const Size size = measured(kPhrase, kBody, maxWidth, maxLines);
    const Rect frame{4, 3, size.width, size.height};
    const DrawText text{.frame = frame, .text = kPhrase, .font = kBody, .maxLines = maxLines};
    const double scale = 2;
    const auto box = inkBox(rasterize({frame.maxX() + 8, frame.maxY() + 6}, {text}, scale));
    ASSERT_FALSE(box.empty());
    EXPECT_GE(box.minX, std::floor(frame.x * scale));
    EXPECT_GE(box.minY, std::floor(frame.y * scale));
    EXPECT_LT(box.maxX, std::ceil(frame.maxX() * scale));
    EXPECT_LT(box.maxY, std::ceil(frame.maxY() * scale));
}

INSTANTIATE_TEST_SUITE_P(TextPainting, TextInFrame,
                         ::testing::Values(TextCase{std::nullopt, 1}, TextCase{60.0, 0},
                                           TextCase{60.0, 1}));

struct AlignmentCase {
    TextAlignment alignment;
    double inkCentre;  // across the frame, 0 to 1
};

class Alignments : public ::testing::TestWithParam<AlignmentCase> {};

TEST_P(Alignments, PlaceTheLineWithinItsFrame) {
    const Size size = measured("Moon");
    const DrawText text{.frame = {0, 0, 5 * size.width, size.height},
                        .text = "Moon",
                        .font = kBody,
                        .alignment = GetParam().alignment};
    const auto box = inkBox(rasterize({text.frame.width, text.frame.height}, {text}));
    EXPECT_NEAR((box.minX + box.maxX + 1) / 2.0 / text.frame.width, GetParam().inkCentre, 0.05);
}

INSTANTIATE_TEST_SUITE_P(TextPainting, Alignments,
                         ::testing::Values(AlignmentCase{TextAlignment::leading, 0.1},
                                           AlignmentCase{TextAlignment::center, 0.5},
                                           AlignmentCase{TextAlignment::trailing, 0.9}));

}  // namespace
}  // namespace lunoval::ui
