#include <gtest/gtest.h>

#include "fake_text_measurer.hpp"
#include "views/simple_moon_phase_view.hpp"

namespace lunoval {
namespace {

using Solar::PhaseType;
using namespace ui;

const testing::FakeTextMeasurer kMeasurer;

SimpleMoonPhaseView disc(PhaseType phase, double illumination, double tilt = 0) {
    return {.moonPhase = {.illumination = illumination, .phaseType = phase, .tiltAngle = tilt},
            .size = 56,
            .strokeColor = Color::white(),
            .fillColor = Color::white(),
            .phaseBackgroundColor = Color::clear(),
            .applyRotation = true,
            .strokeWidth = 1.5};
}

// At scale 2 the corner 1.5 is already on the pixel grid, which keeps the expectations plain.
std::vector<Command> draw(const SimpleMoonPhaseView& view, double scale = 2) {
    std::vector<Command> commands;
    const Environment environment{.displayScale = scale};
    GraphicsContext context(commands, {view.size, view.size}, environment);
    view.draw(context);
    return commands;
}

template <typename Wanted>
std::vector<Wanted> all(const std::vector<ui::Command>& commands) {
    std::vector<Wanted> found;
    for (const auto& command : commands) {
        if (const auto* match = std::get_if<Wanted>(&command)) found.push_back(*match);
    }
    return found;
}

Rect onlyEllipse(const Path& path) {
    return std::get<Path::Ellipse>(path.elements.at(0)).in;
}

TEST(MoonDisc, SnapsTheDiscToThePixelGrid) {
    auto view = disc(PhaseType::newMoon, 0);
    view.size = 20;
    view.strokeWidth = 0.5;
    const auto outline = all<StrokePath>(draw(view, 3)).back();
    const auto rect = onlyEllipse(outline.path);
    EXPECT_DOUBLE_EQ(rect.x, 2.0 / 3);
    EXPECT_DOUBLE_EQ(rect.y, 2.0 / 3);
    EXPECT_DOUBLE_EQ(rect.width, 19);
    EXPECT_EQ(outline.style.lineWidth, 0.5);
}

TEST(MoonDisc, EachPhaseGroupHasItsOwnOutlineOpacity) {
    struct Case {
        PhaseType phase;
        double opacity;
        std::size_t fills;
    };
    for (const auto& [phase, opacity, fills] :
         {Case{PhaseType::newMoon, 0.25, 0}, Case{PhaseType::fullMoon, 0.3, 1},
          Case{PhaseType::firstQuarter, 0.2, 1}, Case{PhaseType::waningGibbous, 0.25, 1},
          Case{PhaseType::waxingCrescent, 0.2, 2}}) {
        const auto commands = draw(disc(phase, 0.4));
        const auto outline = all<StrokePath>(commands).back();
        EXPECT_DOUBLE_EQ(std::get<Color>(outline.paint).alpha, opacity) << rawValue(phase);
        EXPECT_EQ(all<FillPath>(commands).size(), fills) << rawValue(phase);
    }
}

TEST(MoonDisc, QuartersLightTheirHalfAndDrawTheTerminator) {
    // size 56, stroke 1.5: d = 53, r = 26.5, x0 = y0 = 1.5, cx = 28.
    struct Case {
        PhaseType phase;
        Rect half;
        double gradientX;
        double terminatorX;
    };
    for (const auto& [phase, half, gradientX, terminatorX] :
         {Case{PhaseType::firstQuarter, {28, 1.5, 26.5, 53}, 1.5 + 0.75 * 53, 28},
          Case{PhaseType::lastQuarter, {1.5, 1.5, 26.5, 53}, 1.5 + 0.25 * 53, 28}}) {
        const auto commands = draw(disc(phase, 0.5));
        const auto groups = all<BeginGroup>(commands);
        ASSERT_EQ(groups.size(), 2u);
        EXPECT_TRUE(groups[0].isLayer);
        EXPECT_EQ(groups[1].clip, Path::rectangle(half));
        const auto gradient = std::get<RadialGradient>(all<FillPath>(commands)[0].paint);
        EXPECT_DOUBLE_EQ(gradient.center.x, gradientX);
        EXPECT_DOUBLE_EQ(gradient.endRadius, 1.4 * 26.5);
        EXPECT_DOUBLE_EQ(gradient.stops.back().color.alpha, 0.5);
        const auto terminator = all<StrokePath>(commands)[0];
        EXPECT_EQ(terminator.path, Path::line({terminatorX, 1.5}, {terminatorX, 54.5}));
        EXPECT_DOUBLE_EQ(std::get<Color>(terminator.paint).alpha, 0.2);
    }
}

TEST(MoonDisc, CrescentsEraseAnEllipseLeavingKAtTheEquator) {
    struct Case {
        PhaseType phase;
        double illumination;
        Rect erased;
    };
    for (const auto& [phase, illumination, erased] :
         {Case{PhaseType::waxingCrescent, 0.2, {1.5, 1.5, 53 - 10.6, 53}},
          Case{PhaseType::waningCrescent, 0.2, {1.5 + 10.6, 1.5, 53 - 10.6, 53}},
          Case{PhaseType::waxingCrescent, 0.0, {1.5, 1.5, 53, 53}}}) {
        const auto fills = all<FillPath>(draw(disc(phase, illumination)));
        ASSERT_EQ(fills.size(), 2u);
        EXPECT_EQ(fills[1].blendMode, BlendMode::destinationOut);
        const auto rect = onlyEllipse(fills[1].path);
        EXPECT_NEAR(rect.x, erased.x, 1e-9);
        EXPECT_NEAR(rect.width, erased.width, 1e-9);
        EXPECT_EQ(std::get<Color>(fills[1].paint), Color::black());
    }
}

TEST(MoonDisc, GibbousLightsTheHalfAndABulgeNeverLess) {
    struct Case {
        PhaseType phase;
        double illumination;
        Rect bulge;  // as built; a negative width is taken by its extent
        Rect half;
    };
    for (const auto& [phase, illumination, bulge, half] :
         {Case{PhaseType::waxingGibbous, 0.8, {28 - 15.9, 1.5, 31.8, 53}, {28, 1.5, 26.5, 53}},
          Case{PhaseType::waningGibbous, 0.5, {28, 1.5, 0, 53}, {1.5, 1.5, 26.5, 53}},
          Case{PhaseType::waxingGibbous, 0.3, {28 + 10.6, 1.5, -21.2, 53}, {28, 1.5, 26.5, 53}}}) {
        const auto lit = all<FillPath>(draw(disc(phase, illumination)))[0].path;
        ASSERT_EQ(lit.elements.size(), 2u);
        const auto rect = onlyEllipse(lit);
        EXPECT_NEAR(rect.x, bulge.x, 1e-9);
        EXPECT_NEAR(rect.width, bulge.width, 1e-9);
        EXPECT_EQ(std::get<Path::Rectangle>(lit.elements[1]).rect, half);
    }
}

TEST(MoonDisc, TheWaxingTintHasZeroLengthAsPublished) {
    for (const auto phase : {PhaseType::waxingGibbous, PhaseType::waningGibbous}) {
        auto view = disc(phase, 0.7);
        view.tintColor = Color{1, 0.8, 0.4, 1};
        const auto fills = all<FillPath>(draw(view));
        ASSERT_EQ(fills.size(), 2u);
        const auto tint = std::get<LinearGradient>(fills[1].paint);
        EXPECT_EQ(tint.start, (Point{54.5, 1.5}));
        const Point end = phase == PhaseType::waxingGibbous ? Point{54.5, 1.5} : Point{1.5, 1.5};
        EXPECT_EQ(tint.end, end);
        EXPECT_EQ(tint.stops.front().color.alpha, 0.0);
        EXPECT_EQ(tint.stops.back().color.alpha, 1.0);
    }
}

TEST(MoonDisc, TurnsByTheTiltOnlyWhenAskedAndNotAtNewOrFull) {
    constexpr double kDegree = 0.017453292519943295;
    struct Case {
        PhaseType phase;
        bool applyRotation;
        double radians;
    };
    for (const auto& [phase, applyRotation, radians] :
         {Case{PhaseType::waxingCrescent, true, 220 * kDegree},
          Case{PhaseType::waningGibbous, true, 40 * kDegree},
          Case{PhaseType::waxingCrescent, false, 0}, Case{PhaseType::fullMoon, true, 0},
          Case{PhaseType::newMoon, true, 0}}) {
        auto view = disc(phase, 0.3, 40);
        view.applyRotation = applyRotation;
        EXPECT_DOUBLE_EQ(view.rotationAngle(), radians) << rawValue(phase);
    }
    const auto list =
        render(disc(PhaseType::waxingCrescent, 0.3, 40).body(), {56, 56}, {kMeasurer, {}});
    const auto turn = std::get<BeginGroup>(list.commands.front()).transform;
    EXPECT_NEAR(turn.apply({28, 28}).x, 28, 1e-9);
}

}  // namespace
}  // namespace lunoval
