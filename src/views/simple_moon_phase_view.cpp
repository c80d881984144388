#include "views/simple_moon_phase_view.hpp"

#include <cmath>

namespace lunoval {

using Solar::PhaseType;
using namespace ui;

// The disc's square, snapped to the device pixel grid so the outline stays crisp.
struct DiscGeometry {
    double d;   // diameter
    double r;   // radius
    double x0;  // top-left corner
    double y0;
    double cx;  // centre x

    [[nodiscard]] Rect square() const { return {x0, y0, d, d}; }
    [[nodiscard]] Path disc() const { return Path::ellipse(square()); }
    [[nodiscard]] Point at(double fractionX) const { return {x0 + fractionX * d, y0 + 0.5 * d}; }
};

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): points, then pixels per point
DiscGeometry geometry(double size, double strokeWidth, double scale) {
    const auto snap = [scale](double value) { return std::round(value * scale) / scale; };
    const double d = size - 2 * strokeWidth;
    const double r = d / 2;
    const double o = (size - d) / 2;
    return {d, r, snap(o), snap(strokeWidth), snap(r + o)};
}

bool isWaxing(PhaseType phase) {
    return phase == PhaseType::waxingCrescent || phase == PhaseType::firstQuarter ||
           phase == PhaseType::waxingGibbous;
}

// The lit part's gradient: full colour fading to `edgeOpacity` towards the terminator.
RadialGradient litGradient(Color fill, double edgeOpacity, Point center, double radius) {
    return {evenlySpaced({fill, fill.opacity(0.95), fill.opacity(0.85), fill.opacity(0.7),
                          fill.opacity(edgeOpacity)}),
            center, 0, 1.4 * radius};
}

double outlineOpacity(PhaseType phase) {
    switch (phase) {
        case PhaseType::fullMoon:
            return 0.3;
        case PhaseType::newMoon:
        case PhaseType::waxingGibbous:
        case PhaseType::waningGibbous:
            return 0.25;
        default:
            return 0.2;
    }
}

}  // namespace

double SimpleMoonPhaseView::rotationAngle() const {
    const auto phase = moonPhase.phaseType;
    if (!applyRotation || phase == PhaseType::newMoon || phase == PhaseType::fullMoon) return 0;
    const double degrees = isWaxing(phase) ? moonPhase.tiltAngle + 180 : moonPhase.tiltAngle;
    return degrees * kRadiansPerDegree;
}

ui::View SimpleMoonPhaseView::body() const {
    return Canvas([view = *this](GraphicsContext& context) { view.draw(context); })
        .frame(size, size)
        .rotationEffect(rotationAngle());
}

void SimpleMoonPhaseView::draw(GraphicsContext& context) const {
    const auto g = geometry(size, strokeWidth, context.displayScale());
    switch (moonPhase.phaseType) {
        case PhaseType::newMoon:
            break;
        case PhaseType::fullMoon:
            context.fill(g.disc(), fillColor);
            break;
        case PhaseType::firstQuarter:
        case PhaseType::lastQuarter:
            drawQuarter(context, g);
            break;
        case PhaseType::waxingGibbous:
        case PhaseType::waningGibbous:
            drawGibbous(context, g);
            break;
        case PhaseType::waxingCrescent:
        case PhaseType::waningCrescent:
            drawCrescent(context, g);
            break;
    }
    context.stroke(g.disc(), strokeColor.opacity(outlineOpacity(moonPhase.phaseType)),
                   {.lineWidth = strokeWidth});
}

void SimpleMoonPhaseView::drawQuarter(GraphicsContext& context, const DiscGeometry& g) const {
    const bool waxing = isWaxing(moonPhase.phaseType);
    context.drawLayer([&](GraphicsContext& layer) {
        layer.clip(Path::rectangle({waxing ? g.cx : g.x0, g.y0, g.r, g.d}));
        layer.fill(g.disc(), litGradient(fillColor, 0.5, g.at(waxing ? 0.75 : 0.25), g.r));
    });
    const double lx = waxing ? g.cx : g.x0 + g.r;
    const auto gray = systemColor(SystemColor::gray, context.environment().colorScheme);
    context.stroke(Path::line({lx, g.y0}, {lx, g.y0 + g.d}), gray.opacity(0.2), {.lineWidth = 1.0});
}

void SimpleMoonPhaseView::drawGibbous(GraphicsContext& context, const DiscGeometry& g) const {
    const bool waxing = isWaxing(moonPhase.phaseType);
    context.drawLayer([&](GraphicsContext& layer) {
        layer.clip(g.disc());
        // Below half lit, w is negative and the ellipse is taken by its extent: never less
        // than the half disc.
        const double w = (moonPhase.illumination - 0.5) * g.d;
        auto lit = Path::ellipse({g.x0 + g.r - w, g.y0, 2 * w, g.d});
        lit.addRectangle({waxing ? g.cx : g.x0, g.y0, g.d / 2, g.d});
        layer.fill(lit, litGradient(fillColor, 0.2, g.at(waxing ? 0.65 : 0.35), g.r));
        if (!tintColor) return;
        const auto& tint = *tintColor;
        // Both ends start at the right edge, so a waxing tint has zero length; that look is
        // the published one and is left to the renderer's rule.
        layer.fill(lit, LinearGradient{evenlySpaced({tint.opacity(0.0), tint.opacity(0.1),
                                                     tint.opacity(0.4), tint.opacity(0.6), tint}),
                                       {g.x0 + g.d, g.y0},
                                       {waxing ? g.x0 + g.d : g.x0, g.y0}});
    });
}

void SimpleMoonPhaseView::drawCrescent(GraphicsContext& context, const DiscGeometry& g) const {
    const bool waxing = isWaxing(moonPhase.phaseType);
    context.drawLayer([&](GraphicsContext& layer) {
        layer.clip(g.disc());
        layer.fill(g.disc(), litGradient(fillColor, 0.2, g.at(waxing ? 0.8 : 0.2), g.r));
        // Erasing the dark ellipse leaves a crescent k wide at the equator.
        layer.setBlendMode(BlendMode::destinationOut);
        const double k = moonPhase.illumination * g.d;
        layer.fill(Path::ellipse({waxing ? g.x0 : g.x0 + k, g.y0, g.d - k, g.d}), Color::black());
    });
}

}  // namespace lunoval
