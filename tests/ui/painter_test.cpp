#include "ui/painter.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <functional>
#include <numbers>
#include <stdexcept>
#include <string>
#include <system_error>
#include <tuple>
#include <vector>

#include "ui/png_writer.hpp"
#include "ui/raster.hpp"
#include "ui/rendering_mode.hpp"
#include "ui/symbols.hpp"

namespace lunoval::ui {
namespace {

using testing::decodePng;
using testing::rasterize;

constexpr Color kRed{1, 0, 0, 1};

FillPath fillRect(Rect rect) {
    return {Path::rectangle(rect), kRed};
}

// Each case inks opaque red exactly where `covered` says on a 20 by 10 canvas, and nothing else.
TEST(Painter, CoversExactlyThePixelsItShould) {
    using Covered = std::function<bool(int, int)>;
    const Path line = Path::line({0, 5}, {20, 5});
    const auto band = [](int, int y) { return y == 4 || y == 5; };
    const std::pair<std::vector<Command>, Covered> cases[] = {
        // A clip ends with its group.
        {{BeginGroup{.clip = Path::rectangle({0, 0, 5, 10})}, fillRect({0, 0, 20, 5}), EndGroup{},
          fillRect({0, 5, 20, 5})},
         [](int x, int y) { return x < 5 || y >= 5; }},
        // An erasing layer cuts what lies below.
        {{fillRect({0, 0, 20, 10}),
          BeginGroup{.isLayer = true, .blendMode = BlendMode::destinationOut},
          fillRect({0, 0, 4, 10}), EndGroup{}},
         [](int x, int) { return x >= 4; }},
        {{StrokePath{line, kRed, {.lineWidth = 2, .dash = {2, 2}}}},
         [&](int x, int y) { return band(x, y) && (x / 2) % 2 == 0; }},
        // Shapes and groups with nothing to draw draw nothing, a dash cairo refuses draws solid,
        // and what follows each still draws.
        {{FillPath{Path::ellipse({2, 2, 0, 5}), kRed},
          FillPath{Path::ellipse({2, 2, 5, -0.0}), kRed}, StrokePath{line, kRed, {.lineWidth = 0}},
          BeginGroup{.transform = {0, 0, 0, 0, 5, 5}}, fillRect({0, 0, 10, 10}), BeginGroup{},
          fillRect({0, 0, 10, 10}), EndGroup{}, EndGroup{},
          StrokePath{line, kRed, {.lineWidth = 2, .dash = {0, 0}}}, fillRect({0, 0, 1, 1})},
         [&](int x, int y) { return band(x, y) || (x == 0 && y == 0); }},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [commands, covered] = cases[i];
        const auto raster = rasterize({20, 10}, commands);
        int wrong = 0;
        for (int y = 0; y < raster.height; ++y) {
            for (int x = 0; x < raster.width; ++x) {
                wrong += raster.pixel(x, y) != (covered(x, y) ? 0xffff0000 : 0);
            }
        }
        EXPECT_EQ(wrong, 0) << "case " << i;
    }
}

// Alpha at a few points, to within 4 levels.
TEST(Painter, BlendsALayerAsOneAndFillsByTheRule) {
    const Path shapes = Path::ellipse({0, 0, 10, 10}).addRectangle({5, 0, 5, 10});
    const BeginGroup half{.isLayer = true, .opacity = 0.5};
    const std::tuple<std::vector<Command>, std::vector<std::array<int, 3>>> cases[] = {
        {{half, fillRect({0, 0, 6, 10}), fillRect({4, 0, 6, 10}), EndGroup{}},
         {{1, 5, 128}, {5, 5, 128}, {8, 5, 128}}},
        // Unbalanced groups are closed and ignored.
        {{EndGroup{}, half, fillRect({0, 0, 10, 10})}, {{5, 5, 128}}},
        {{FillPath{shapes, kRed}}, {{2, 5, 255}, {9, 0, 255}, {7, 5, 255}}},
        {{FillPath{shapes, kRed, FillRule::evenOdd}}, {{2, 5, 255}, {9, 0, 255}, {7, 5, 0}}},
        // Half a turn from three o'clock goes clockwise, through the bottom.
        {{FillPath{Path{}.arc({5, 5}, 5, 0, std::numbers::pi), kRed}}, {{5, 8, 255}, {5, 2, 0}}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto raster = rasterize({10, 10}, std::get<0>(cases[i]));
        for (const auto& [x, y, level] : std::get<1>(cases[i])) {
            EXPECT_NEAR(raster.alpha(x, y), level, 4) << "case " << i << " at " << x << "," << y;
        }
    }
}

// Sizes that make no image and names of no format it writes are refused, and nothing is written.
TEST(ImageEncoding, RefusesWhatItCannotWrite) {
    for (const Size size : {Size{0, 10}, Size{10, std::nan("")}, Size{11000, 10}})
        EXPECT_THROW((void)encodeImage({size, {}}, {}, ImageFormat::png), std::runtime_error);
    const auto gif = std::filesystem::temp_directory_path() / "lunoval-refused.gif";
    EXPECT_THROW(writeImage({{10, 10}, {}}, {}, gif), std::system_error);
    EXPECT_FALSE(std::filesystem::exists(gif));
}

std::string cairosOwnPng(cairo_surface_t* surface) {
    std::string bytes;
    cairo_surface_write_to_png_stream(
        surface,
        [](void* closure, const unsigned char* data, unsigned int length) {
            static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
            return CAIRO_STATUS_SUCCESS;
        },
        &bytes);
    return bytes;
}

// Our writer differs from cairo's only in its row filter: every pixel must read back the same,
// transparent, translucent or opaque, and an opaque image must still be RGB without alpha.
TEST(ImageEncoding, PngPixelsAreThoseOfCairosOwnWriter) {
    for (const double startAlpha : {0.0, 1.0}) {
        cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 97, 61);
        cairo_t* cairo = cairo_create(surface);
        cairo_pattern_t* gradient = cairo_pattern_create_linear(30, 20, 97, 61);
        cairo_pattern_add_color_stop_rgba(gradient, 0, 1, 0.3, 0, startAlpha);
        cairo_pattern_add_color_stop_rgba(gradient, 1, 0.2, 1, 0.7, 1);
        cairo_set_source(cairo, gradient);
        cairo_paint(cairo);
        const auto ours = pngBytes(surface);
        const auto cairos = cairosOwnPng(surface);
        EXPECT_EQ(decodePng(ours).pixels, decodePng(cairos).pixels) << startAlpha;
        // IHDR: size, depth, colour type.
        EXPECT_EQ(ours.substr(16, 10), cairos.substr(16, 10)) << startAlpha;
        cairo_pattern_destroy(gradient);
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
}

// The mean alpha, 0 to 1, over the pixels from column `from` up to `to`.
double coverage(const testing::Raster& raster, int from, int to) {
    double sum = 0;
    for (int y = 0; y < raster.height; ++y) {
        for (int x = from; x < to; ++x) sum += raster.alpha(x, y) / 255.0;
    }
    return sum / ((to - from) * raster.height);
}

// The calendar tells the quarters apart by these alone.
TEST(Symbols, PhasesLightTheHalvesTheirNamesSayAndInverseOnesTheOthers) {
    for (const auto& [phase, leftLit, rightLit] : {std::tuple{"new.moon", false, false},
                                                   {"first.quarter", false, true},
                                                   {"full.moon", true, true},
                                                   {"last.quarter", true, false}}) {
        for (const bool inverse : {false, true}) {
            const auto name = std::string("moonphase.") + phase + (inverse ? ".inverse" : "");
            const DrawSymbol symbol{{0, 0, 20, 20}, name, FontWeight::regular, Color::white()};
            const auto raster = rasterize({20, 20}, {symbol}, 4);
            // A lit half disc covers π/4 of its half of the frame, an outline well under half.
            EXPECT_EQ(coverage(raster, 0, 40) > 0.5, leftLit != inverse) << name;
            EXPECT_EQ(coverage(raster, 40, 80) > 0.5, rightLit != inverse) << name;
        }
    }
}

// Every drawing inks its frame and nothing beyond, even at the boldest weight.
TEST(Symbols, EveryDrawingInksItsFrameAndNothingBeyond) {
    for (const auto name : symbolNames()) {
        const Rect frame{2, 2, 20 * findSymbol(name)->aspectRatio, 20};
        const DrawSymbol symbol{frame, std::string(name), FontWeight::bold, Color::white()};
        const auto raster = rasterize({frame.maxX() + 2, 24}, {symbol});
        std::array<int, 2> inked{};  // outside the frame, inside
        for (int y = 0; y < raster.height; ++y) {
            for (int x = 0; x < raster.width; ++x)
                inked[x >= 2 && x < std::ceil(frame.maxX()) && y >= 2 && y < 22] +=
                    raster.alpha(x, y) > 0;
        }
        EXPECT_TRUE(inked[0] == 0 && inked[1] > 0) << name;
    }
}

constexpr Color kCyan{0.39, 0.82, 1, 0.5};
// Tinted modes keep the luminance as alpha.
constexpr double kCyanAlpha = (0.2126 * 0.39 + 0.7152 * 0.82 + 0.0722 * 1) * 0.5;

// What erases, alone or in an erasing layer, then one command of every kind that carries a
// colour, all in `color`.
DisplayList everyKind(Color color) {
    const auto stops = evenlySpaced({color, color});
    const auto square = Path::rectangle({0, 0, 10, 10});
    const FillPath black{square, Color::black()};
    return {{100, 100},
            {FillPath{square, Color::black(), FillRule::nonZero, BlendMode::destinationOut},
             BeginGroup{.isLayer = true, .blendMode = BlendMode::destinationOut}, black, EndGroup{},
             BeginGroup{.isLayer = true}, FillPath{square, color},
             FillPath{square, LinearGradient{stops, {0, 0}, {10, 0}}},
             StrokePath{Path::line({0, 0}, {5, 5}), RadialGradient{stops, {5, 5}, 0, 5}},
             DrawText{.frame = {0, 0, 50, 20}, .text = "Moon", .color = color},
             DrawSymbol{.frame = {0, 0, 10, 10}, .name = "moon.fill", .color = color}, EndGroup{}},
            "lunoval://moon"};
}

TEST(RenderingModes, MapEveryColourOfEveryCommandButLeaveWhatErases) {
    for (const auto& [mode, expected] : {std::pair{RenderingMode::fullColor, kCyan},
                                         {RenderingMode::vibrant, {1, 1, 1, kCyanAlpha}},
                                         {RenderingMode::accented, {1, 0.62, 0.04, kCyanAlpha}}}) {
        const auto mapped = applyRenderingMode(everyKind(kCyan), mode, {1, 0.62, 0.04, 1});
        EXPECT_EQ(mapped.commands, everyKind(expected).commands) << static_cast<int>(mode);
        EXPECT_EQ(mapped.widgetURL, "lunoval://moon");
    }
}

}  // namespace
}  // namespace lunoval::ui
