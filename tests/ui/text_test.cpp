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

TEST(TextMeasure, EachWeightIsInterAtItsOwnWeightAndHeavierIsWider) {
    double previous = 0;
    for (const auto& [weight, fontWeight] : {std::pair{FontWeight::regular, 400},
                                             {FontWeight::medium, 500},
                                             {FontWeight::semibold, 600},
                                             {FontWeight::bold, 700}}) {
        const LayoutHandle layout = layOutText("Moon", Font::system(17, weight), {});
        const auto* run = static_cast<PangoGlyphItem*>(
            pango_layout_get_line_readonly(layout.get(), 0)->runs->data);
        PangoFontDescription* used = pango_font_describe(run->item->analysis.font);
        EXPECT_STREQ(pango_font_description_get_family(used), "Inter");
        EXPECT_EQ(pango_font_description_get_weight(used), fontWeight);
        pango_font_description_free(used);
        const double width = measured(kPhrase, Font::system(17, weight)).width;
        EXPECT_GT(width, previous) << fontWeight;
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

TEST(TextMeasure, LineLimitsCutWithAnEllipsisAndSaySo) {
    const Size line = measured(kPhrase);
    struct Case {
        std::optional<double> maxWidth;
        int maxLines;
        int lines;
        bool truncated;
    };
    for (const auto& [maxWidth, maxLines, lines, truncated] :
         {Case{0.4 * line.width, 1, 1, true}, Case{0.4 * line.width, 2, 2, true},
          Case{line.width, 1, 1, false}, Case{std::nullopt, 1, 1, false},
          Case{std::numeric_limits<double>::infinity(), 1, 1, false}}) {
        SCOPED_TRACE(::testing::Message() << maxWidth.value_or(-1) << " wide, " << maxLines);
        const TextMeasurement result = kMeasurer.measure(kPhrase, kBody, maxWidth, maxLines);
        EXPECT_EQ(result.truncated, truncated);
        EXPECT_NEAR(result.size.height, lines * line.height, 0.5);
        EXPECT_LE(result.size.width, maxWidth.value_or(line.width));
    }
    // Too narrow even for the ellipsis.
    EXPECT_TRUE(kMeasurer.measure(kPhrase, kBody, 1.0, 1).truncated);
}

TEST(TextMeasure, TheSameTextAlwaysMeasuresTheSame) {
    const TextMeasurement first = kMeasurer.measure(kPhrase, kBody, 60.0, 2);
    (void)measured("Something else entirely", Font::system(28, FontWeight::bold));
    const TextMeasurement again = kMeasurer.measure(kPhrase, kBody, 60.0, 2);
    EXPECT_EQ(again.size, first.size);
    EXPECT_EQ(again.truncated, first.truncated);
}

// The frame is what measuring gave, so any wrap or overflow the painter adds shows as ink outside.
TEST(TextPainting, InkStaysInsideTheMeasuredFrame) {
    for (const auto& [maxWidth, maxLines] :
         {std::pair<std::optional<double>, int>{std::nullopt, 1}, {60.0, 0}, {60.0, 1}}) {
        const Size size = measured(kPhrase, kBody, maxWidth, maxLines);
        const Rect frame{4, 3, size.width, size.height};
        const DrawText text{.frame = frame, .text = kPhrase, .font = kBody, .maxLines = maxLines};
        const double scale = 2;
        const auto box = inkBox(rasterize({frame.maxX() + 8, frame.maxY() + 6}, {text}, scale));
        ASSERT_FALSE(box.empty());
        EXPECT_GE(box.minX, std::floor(frame.x * scale)) << maxLines;
        EXPECT_GE(box.minY, std::floor(frame.y * scale)) << maxLines;
        EXPECT_LT(box.maxX, std::ceil(frame.maxX() * scale)) << maxLines;
        EXPECT_LT(box.maxY, std::ceil(frame.maxY() * scale)) << maxLines;
    }
}

TEST(TextPainting, AlignmentPlacesTheLineWithinItsFrame) {
    const Size size = measured("Moon");
    for (const auto& [alignment, inkCentre] : {std::pair{TextAlignment::leading, 0.1},
                                               {TextAlignment::center, 0.5},
                                               {TextAlignment::trailing, 0.9}}) {
        const DrawText text{.frame = {0, 0, 5 * size.width, size.height},
                            .text = "Moon",
                            .font = kBody,
                            .alignment = alignment};
        const auto box = inkBox(rasterize({text.frame.width, text.frame.height}, {text}));
        EXPECT_NEAR((box.minX + box.maxX + 1) / 2.0 / text.frame.width, inkCentre, 0.05);
    }
}

}  // namespace
}  // namespace lunoval::ui
