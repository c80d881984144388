#pragma once

#include <optional>

#include "astro/phase_type.hpp"
#include "ui/view.hpp"

namespace lunoval {

struct DiscGeometry;

// The moon as a small disc whose lit part follows the phase. Every caller passes every field.
struct SimpleMoonPhaseView {
    Solar::SimpleMoonPhase moonPhase;
    double size = 0;  // side of the square canvas, in points
    ui::Color strokeColor;
    ui::Color fillColor;
    ui::Color phaseBackgroundColor;  // for callers; the disc does not paint it
    std::optional<ui::Color> tintColor;
    bool applyRotation = false;
    double strokeWidth = 0;  // the outline's width and the disc's inset

    [[nodiscard]] ui::View body() const;
    // Radians the picture turns by: none for new and full moon.
    [[nodiscard]] double rotationAngle() const;
    // The paint routine over a `size` by `size` canvas.
    void draw(ui::GraphicsContext& context) const;

  private:
    void drawQuarter(ui::GraphicsContext& context, const DiscGeometry& g) const;
    void drawGibbous(ui::GraphicsContext& context, const DiscGeometry& g) const;
    void drawCrescent(ui::GraphicsContext& context, const DiscGeometry& g) const;
};

}  // namespace lunoval
