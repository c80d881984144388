#include "ui/symbols.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

// Where a path's ink lies, in the symbol's frame: points along it, and how far ink reaches
// beyond them (half the line width of a stroke, nothing for a fill).
struct Ink {
    std::vector<Point> points;
    double reach = 0;
};

Point bezier(Point from, const Path::CurveTo& curve, double t) {
    const double u = 1 - t;
    const auto blend = [&](double a, double b, double c, double d) {
        return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
    };
    return {blend(from.x, curve.control1.x, curve.control2.x, curve.to.x),
            blend(from.y, curve.control1.y, curve.control2.y, curve.to.y)};
}

std::vector<Point> pointsOf(const Path& path, const Transform& transform) {
    std::vector<Point> points;
    Point current;
    const auto add = [&](Point p) { points.push_back(transform.apply(p)); };
    const auto addCorners = [&](Rect rect) {
        const Rect r = rect.standardized();
        add({r.x, r.y});
        add({r.maxX(), r.maxY()});
    };
    for (const auto& element : path.elements) {
        if (const auto* move = std::get_if<Path::MoveTo>(&element)) {
            current = move->to;
            add(current);
        } else if (const auto* line = std::get_if<Path::LineTo>(&element)) {
            current = line->to;
            add(current);
        } else if (const auto* curve = std::get_if<Path::CurveTo>(&element)) {
            for (int i = 1; i <= 16; ++i) add(bezier(current, *curve, i / 16.0));
            current = curve->to;
        } else if (const auto* ellipse = std::get_if<Path::Ellipse>(&element)) {
            addCorners(ellipse->in);
        } else if (const auto* rectangle = std::get_if<Path::Rectangle>(&element)) {
            addCorners(rectangle->rect);
        } else if (std::holds_alternative<Path::Arc>(element)) {
            ADD_FAILURE() << "arcs are not traced";
        }
    }
    return points;
}

std::vector<Ink> inkOf(const DrawSymbol& symbol) {
    std::vector<Ink> inks;
    std::vector<Transform> transforms{Transform{}};
    for (const auto& command : symbolCommands(symbol, kEnvironment)) {
        if (const auto* group = std::get_if<BeginGroup>(&command)) {
            transforms.push_back(transforms.back().after(group->transform));
        } else if (std::holds_alternative<EndGroup>(command)) {
            transforms.pop_back();
        } else if (const auto* fill = std::get_if<FillPath>(&command)) {
            inks.push_back({pointsOf(fill->path, transforms.back()), 0});
        } else if (const auto* stroke = std::get_if<StrokePath>(&command)) {
            inks.push_back(
                {pointsOf(stroke->path, transforms.back()), stroke->style.lineWidth / 2});
        }
    }
    EXPECT_EQ(transforms.size(), 1U) << "unbalanced groups";
    return inks;
}

constexpr double kPixelsPerPoint = 4;

// The symbol drawn over `below` on a clear canvas reaching to its frame.
testing::Raster drawn(const DrawSymbol& symbol, std::vector<Command> below = {}) {
    below.emplace_back(symbol);
    return testing::rasterize({symbol.frame.maxX(), symbol.frame.maxY()}, std::move(below),
                              kPixelsPerPoint);
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
    for (const std::string name : {"moon.stars", "", "Moon", "moon.fill ", "moonphase.new"}) {
        EXPECT_EQ(findSymbol(name), nullptr) << name;
        EXPECT_TRUE(symbolCommands(symbolAt(name, {0, 0, 20, 20}), kEnvironment).empty()) << name;
    }
}

TEST(Symbols, InkStaysInsideTheFrameAtEveryWeight) {
    const std::vector<std::pair<Point, double>> places{{{0, 0}, 9}, {{13.5, 7.25}, 40}};
    for (const auto& name : kNames) {
        for (const auto& [origin, height] : places) {
            for (const auto weight : {FontWeight::regular, FontWeight::bold}) {
                const Rect frame = frameOf(name, origin, height);
                for (const auto& ink : inkOf(symbolAt(name, frame, weight))) {
                    for (const Point p : ink.points) {
                        const double slack = 1e-9 * height;
                        EXPECT_GE(p.x - ink.reach, frame.x - slack) << name << " at " << height;
                        EXPECT_LE(p.x + ink.reach, frame.maxX() + slack) << name;
                        EXPECT_GE(p.y - ink.reach, frame.y - slack) << name;
                        EXPECT_LE(p.y + ink.reach, frame.maxY() + slack) << name;
                    }
                }
            }
        }
    }
}

TEST(Symbols, ADrawingScalesWithItsFrame) {
    for (const auto& name : kNames) {
        SCOPED_TRACE(name);
        const auto small = inkOf(symbolAt(name, frameOf(name, {}, 9)));
        const auto large = inkOf(symbolAt(name, frameOf(name, {}, 40)));
        ASSERT_EQ(small.size(), large.size());
        const double scale = 40.0 / 9.0;
        for (std::size_t i = 0; i < small.size(); ++i) {
            EXPECT_NEAR(small[i].reach * scale, large[i].reach, 1e-9);
            ASSERT_EQ(small[i].points.size(), large[i].points.size());
            for (std::size_t j = 0; j < small[i].points.size(); ++j) {
                EXPECT_NEAR(small[i].points[j].x * scale, large[i].points[j].x, 1e-9);
                EXPECT_NEAR(small[i].points[j].y * scale, large[i].points[j].y, 1e-9);
            }
        }
    }
}

TEST(Symbols, AFrameOfAnotherShapeKeepsTheDrawingsProportions) {
    const auto ink = inkOf(symbolAt("moonphase.full.moon", {0, 0, 40, 20}));
    ASSERT_EQ(ink.size(), 1U);
    EXPECT_THAT(ink[0].points, ::testing::Contains(Point{10, 0}));
    EXPECT_THAT(ink[0].points, ::testing::Contains(Point{30, 20}));
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
