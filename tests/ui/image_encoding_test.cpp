#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "platform/files.hpp"
#include "temp_folder.hpp"
#include "ui/painter.hpp"
#include "ui/png_writer.hpp"
#include "ui/raster.hpp"

namespace lunoval::ui {
namespace {

const DisplayList kSquare{{10, 10}, {FillPath{Path::rectangle({2, 2, 6, 6}), Color::white()}}};

TEST(ImageEncoding, PixelSizesAreThePointsTimesTheScaleRoundedUp) {
    struct Case {
        Size points;
        double scale;
        int width;
        int height;
    };
    for (const auto& [points, scale, width, height] :
         {Case{{170, 170}, 3, 510, 510}, Case{{10.2, 5}, 3, 31, 15}, Case{{0.1, 10}, 30, 3, 300}}) {
        const testing::Raster raster(
            encodeImage({points, {}}, {.displayScale = scale}, ImageFormat::png));
        EXPECT_EQ(raster.width(), width);
        EXPECT_EQ(raster.height(), height);
    }
    EXPECT_THROW((void)encodeImage({{0, 10}, {}}, {}, ImageFormat::png), std::runtime_error);
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
    for (const double backdropAlpha : {0.0, 0.4, 1.0}) {
        cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 97, 61);
        cairo_t* cairo = cairo_create(surface);
        cairo_set_source_rgba(cairo, 0.1, 0.5, 0.9, backdropAlpha);
        cairo_paint(cairo);
        cairo_pattern_t* gradient = cairo_pattern_create_linear(0, 0, 97, 61);
        cairo_pattern_add_color_stop_rgba(gradient, 0, 1, 0.3, 0, backdropAlpha);
        cairo_pattern_add_color_stop_rgba(gradient, 1, 0.2, 1, 0.7, 1);
        cairo_set_source(cairo, gradient);
        cairo_arc(cairo, 48, 30, 25, 0, 6.3);
        cairo_fill(cairo);
        const testing::Raster ours(pngBytes(surface));
        const testing::Raster cairos(cairosOwnPng(surface));
        for (int y = 0; y < 61; ++y) {
            for (int x = 0; x < 97; ++x) {
                ASSERT_EQ(ours.pixel(x, y), cairos.pixel(x, y)) << backdropAlpha << " " << x;
            }
        }
        const auto header = pngBytes(surface).substr(16, 10);  // IHDR: size, depth, colour type
        EXPECT_EQ(header, cairosOwnPng(surface).substr(16, 10)) << backdropAlpha;
        cairo_pattern_destroy(gradient);
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
}

TEST(ImageFormat, FollowsTheExtensionInAnyCase) {
    EXPECT_EQ(imageFormatFor("a/moon.png"), ImageFormat::png);
    EXPECT_EQ(imageFormatFor("moon.SVG"), ImageFormat::svg);
    EXPECT_EQ(imageFormatFor("moon.Pdf"), ImageFormat::pdf);
    EXPECT_EQ(imageFormatFor("moon.jpg"), std::nullopt);
    EXPECT_EQ(imageFormatFor("png"), std::nullopt);
}

TEST(ImageFormat, WritingPicksTheFormatByNameAndRefusesOthers) {
    const lunoval::testing::TempFolder folder("lunoval-image");
    const auto path = folder.path() / "square.PNG";
    writeImage(kSquare, {}, path);
    EXPECT_EQ(readWholeFile(path), encodeImage(kSquare, {}, ImageFormat::png));
    EXPECT_THROW(writeImage(kSquare, {}, folder.path() / "square.gif"), std::system_error);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "square.gif"));
}

}  // namespace
}  // namespace lunoval::ui
