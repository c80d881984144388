#include "ui/symbols.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "ui/raster.hpp"

namespace lunoval::ui {
namespace {

const std::vector<std::string> kNames(
    {"moon", "moon.fill", "moonrise.fill", "moonset.fill", "sunrise.fill", "sunset.fill",
     "sun.and.horizon.fill", "location.slash", "location.slash.fill", "moonphase.new.moon",
     "moonphase.first.quarter", "moonphase.full.moon", "moonphase.last.quarter",
     "moonphase.new.moon.inverse", "moonphase.first.quarter.inverse", "moonphase.full.moon.inverse",
     "moonphase.last.quarter.inverse"});

const Environment kEnvironment{};

DrawSymbol symbolAt(const std::string& name, Rect frame, FontWeight weight = FontWeight::regular) {
    return {frame, name, weight, Color::white()};
}

// A frame of the symbol's own shape, `height` tall.
Rect frameOf(const std::string& name, Point origin, double height) {
    return {origin.x, origin.y, height * findSymbol(name)->aspectRatio, height};
}

constexpr double kPixelsPerPoint = 4;

// The symbol drawn over `below` on a clear canvas reaching `margin` beyond its frame.
testing::Raster drawn(const DrawSymbol& symbol, std::vector<Command> below = {},
                      double margin = 0) {
    below.emplace_back(symbol);
    return testing::rasterize({symbol.frame.maxX() + margin, symbol.frame.maxY() + margin},
                              std::move(below), kPixelsPerPoint);
}

// The pixels the symbol inks, with room around its frame to show any that strays outside.
testing::InkBox inkOf(const DrawSymbol& symbol) {
    return testing::inkBox(drawn(symbol, {}, 2));
}

bool inked(const testing::Raster& raster, Point p) {
    return raster.alpha(static_cast<int>(p.x * kPixelsPerPoint),
                        static_cast<int>(p.y * kPixelsPerPoint)) > 127;
}

// The mean alpha, 0 to 1, over a region in points.
double coverage(const testing::Raster& raster, Rect region) {
    const auto pixel = [](double points) { return static_cast<int>(points * kPixelsPerPoint); };
    double sum = 0;
    int count = 0;
    for (int y = pixel(region.y); y < pixel(region.maxY()); ++y) {
        for (int x = pixel(region.x); x < pixel(region.maxX()); ++x, ++count) {
            sum += raster.alpha(x, y) / 255.0;
        }
    }
    return sum / count;
}

TEST(Symbols, EveryNameTheWidgetsUseHasADrawing) {
    for (const auto& name : kNames) {
        SCOPED_TRACE(name);
        ASSERT_NE(findSymbol(name), nullptr);
        EXPECT_GT(findSymbol(name)->aspectRatio, 0);
        EXPECT_FALSE(inkOf(symbolAt(name, frameOf(name, {}, 20))).empty());
    }
    EXPECT_THAT(symbolNames(), ::testing::UnorderedElementsAreArray(kNames.begin(), kNames.end()));
}

TEST(Symbols, AnUnknownNameDrawsNothing) {
    for (const std::string name : {"moon.stars", "Moon", "moon.fill "}) {
        EXPECT_EQ(findSymbol(name), nullptr) << name;
        EXPECT_TRUE(symbolCommands(symbolAt(name, {0, 0, 20, 20}), kEnvironment).empty()) << name;
    }
}

TEST(Symbols, InkStaysInsideTheFrameAtEveryWeight) {
    const std::vector<std::pair<Point, double>> places{{{0, 0}, 9}, {{13.5, 7.25}, 40}};
    const auto pixel = [](double points) { return points * kPixelsPerPoint; };
    for (const auto& name : kNames) {
        for (const auto& [origin, height] : places) {
            for (const auto weight : {FontWeight::regular, FontWeight::bold}) {
                const Rect frame = frameOf(name, origin, height);
                const auto box = inkOf(symbolAt(name, frame, weight));
                // Pixels the frame's edge crosses may hold ink.
                EXPECT_GE(box.minX, std::floor(pixel(frame.x))) << name << " at " << height;
                EXPECT_LT(box.maxX, std::ceil(pixel(frame.maxX()))) << name << " at " << height;
                EXPECT_GE(box.minY, std::floor(pixel(frame.y))) << name << " at " << height;
                EXPECT_LT(box.maxY, std::ceil(pixel(frame.maxY()))) << name << " at " << height;
            }
        }
    }
}

TEST(Symbols, AFrameOfAnotherShapeKeepsTheDrawingsProportions) {
    // The disc keeps its circle, 20 points across, centred in the wide frame.
    const auto box = inkOf(symbolAt("moonphase.full.moon", {0, 0, 40, 20}));
    EXPECT_NEAR(box.minX, 10 * kPixelsPerPoint, 1);
    EXPECT_NEAR(box.maxX, 30 * kPixelsPerPoint - 1, 1);
    EXPECT_NEAR(box.minY, 0, 1);
    EXPECT_NEAR(box.maxY, 20 * kPixelsPerPoint - 1, 1);
}

TEST(Symbols, PhasesLightTheHalvesTheirNamesSay) {
    struct Case {
        std::string name;
        bool leftLit;
        bool rightLit;
    };
    const std::vector<Case> cases{
        {"moonphase.new.moon", false, false},
        {"moonphase.first.quarter", false, true},
        {"moonphase.full.moon", true, true},
        {"moonphase.last.quarter", true, false},
        {"moonphase.new.moon.inverse", true, true},
        {"moonphase.first.quarter.inverse", true, false},
        {"moonphase.full.moon.inverse", false, false},
        {"moonphase.last.quarter.inverse", false, true},
    };
    for (const auto& c : cases) {
        const auto raster = drawn(symbolAt(c.name, {0, 0, 20, 20}));
        // A lit half disc covers π/4 of its half of the frame, an outline well under half.
        EXPECT_EQ(coverage(raster, {0, 0, 10, 20}) > 0.5, c.leftLit) << c.name;
        EXPECT_EQ(coverage(raster, {10, 0, 10, 20}) > 0.5, c.rightLit) << c.name;
    }
}

TEST(Symbols, CutsNeverReachThroughToWhatLiesBelow) {
    const std::vector<Command> background{
        FillPath{Path::rectangle({0, 0, 60, 40}), Color{0.2, 0.3, 0.4, 1}}};
    for (const auto& name : kNames) {
        const auto raster = drawn(symbolAt(name, frameOf(name, {2, 2}, 30)), background);
        EXPECT_DOUBLE_EQ(coverage(raster, frameOf(name, {2, 2}, 30)), 1) << name;
    }
}

TEST(Symbols, TheSlashIsCutClearOfThePointer) {
    const auto raster = drawn(symbolAt("location.slash.fill", {0, 0, 40, 40}));
    // From the centre towards the tip: the pointer's tail, a gap, the slash, a gap, the tip.
    std::vector<bool> runs;
    for (double step = 0; step < 14; step += 0.25) {
        const bool ink = inked(raster, {20 + step, 20 - step});
        if (runs.empty() || runs.back() != ink) runs.push_back(ink);
    }
    EXPECT_EQ(runs, (std::vector<bool>{true, false, true, false, true}));
}

}  // namespace
}  // namespace lunoval::ui
