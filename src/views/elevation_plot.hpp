#pragma once

#include <optional>
#include <vector>

#include "ui/graphics_context.hpp"
#include "views/elevation_model.hpp"

namespace lunoval {

// The chart's colours in one rendering mode.
struct ChartPalette {
    ui::Color rise;
    ui::Color set;
    ui::Color curve;
    ui::Color glow;
    ui::Color noon;

    static ChartPalette make(ui::ColorScheme scheme, ui::RenderingMode mode);
};

struct ChartMarker {
    ui::Point point;
    ui::Color color;
};

// The moon where it stands now; its glow and symbol are brighter above the horizon.
struct PresentPosition {
    static constexpr double kGlowRadius = 11;

    ui::Point point;
    bool aboveHorizon = false;
};

// Everything the chart's canvas draws, in the canvas's own points.
struct ElevationPlot {
    ElevationScale scale;
    std::vector<ui::Point> curve;
    std::vector<ChartMarker> markers;
    std::optional<double> noonX;
    std::optional<PresentPosition> present;
    ChartPalette palette;

    void paint(ui::GraphicsContext& context) const;

  private:
    void paintBackdrop(ui::GraphicsContext& context) const;
    void paintCurve(ui::GraphicsContext& context) const;
    void paintMarkerGuides(ui::GraphicsContext& context) const;
    void paintNoon(ui::GraphicsContext& context, double x) const;
    void paintGlow(ui::GraphicsContext& context, const PresentPosition& position) const;
};

}  // namespace lunoval
