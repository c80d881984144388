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
