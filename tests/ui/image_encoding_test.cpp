#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "platform/files.hpp"
#include "temp_folder.hpp"
#include "ui/painter.hpp"
#include "ui/raster.hpp"

namespace lunoval::ui {
namespace {

const DisplayList kSquare{{10, 10}, {FillPath{Path::rectangle({2, 2, 6, 6}), Color::white()}}};

struct MagicCase {
    ImageFormat format;
    std::string magic;
};

class Encodings : public ::testing::TestWithParam<MagicCase> {};

TEST_P(Encodings, StartWithTheirFormatsSignature) {
    const std::string bytes = encodeImage(kSquare, {}, GetParam().format);
    EXPECT_EQ(bytes.substr(0, GetParam().magic.size()), GetParam().magic);
}

INSTANTIATE_TEST_SUITE_P(ImageEncoding, Encodings,
                         ::testing::Values(MagicCase{ImageFormat::png, "\x89PNG\r\n\x1a\n"},
                                           MagicCase{ImageFormat::svg, "<?xml"},
                                           MagicCase{ImageFormat::pdf, "%PDF-"}));

struct PixelSizeCase {
    Size points;
    double scale;
    int width;
    int height;
};

class PixelSizes : public ::testing::TestWithParam<PixelSizeCase> {};

TEST_P(PixelSizes, AreThePointsTimesTheScaleRoundedUp) {
    const auto [points, scale, width, height] = GetParam();
    const testing::Raster raster(
        encodeImage({points, {}}, {.displayScale = scale}, ImageFormat::png));
    EXPECT_EQ(raster.width(), width);
    EXPECT_EQ(raster.height(), height);
}

INSTANTIATE_TEST_SUITE_P(ImageEncoding, PixelSizes,
                         ::testing::Values(PixelSizeCase{{170, 170}, 3, 510, 510},
                                           PixelSizeCase{{10.2, 5}, 3, 31, 15},
                                           PixelSizeCase{{0.1, 10}, 30, 3, 300}));

TEST(ImageEncoding, AnImageWithoutPixelsIsRefused) {
    EXPECT_THROW((void)encodeImage({{0, 10}, {}}, {}, ImageFormat::png), std::runtime_error);
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
