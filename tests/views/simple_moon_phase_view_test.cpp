#include <gtest/gtest.h>

#include "display_list_queries.hpp"
#include "views/simple_moon_phase_view.hpp"

namespace lunoval {
namespace {

using Solar::PhaseType;
using namespace ui;
using testing::all;

SimpleMoonPhaseView disc(PhaseType phase, double illumination) {
    return {.moonPhase = {.illumination = illumination, .phaseType = phase},
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

TEST(MoonDisc, EachPhaseGroupHasItsOwnOutlineOpacityAndQuartersATerminator) {
    struct Case {
        PhaseType phase;
        double opacity;
        bool terminator;
    };
    for (const auto& [phase, opacity, terminator] :
         {Case{PhaseType::newMoon, 0.25, false}, Case{PhaseType::fullMoon, 0.3, false},
          Case{PhaseType::firstQuarter, 0.2, true}, Case{PhaseType::lastQuarter, 0.2, true},
          Case{PhaseType::waningGibbous, 0.25, false},
          Case{PhaseType::waxingCrescent, 0.2, false}}) {
        const auto strokes = all<StrokePath>(draw(disc(phase, 0.5)));
        EXPECT_DOUBLE_EQ(std::get<Color>(strokes.back().paint).alpha, opacity) << rawValue(phase);
        ASSERT_EQ(strokes.size(), terminator ? 2u : 1u) << rawValue(phase);
        if (terminator) {
            // Size 56 and stroke 1.5: the disc spans 1.5 to 54.5 about the centre 28.
            EXPECT_EQ(strokes[0].path, Path::line({28, 1.5}, {28, 54.5}));
            EXPECT_DOUBLE_EQ(std::get<Color>(strokes[0].paint).alpha, 0.2);
        }
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

}  // namespace
}  // namespace lunoval
