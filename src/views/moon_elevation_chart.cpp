#include "views/moon_elevation_chart.hpp"

#include <algorithm>
#include <numbers>

#include "views/elevation_plot.hpp"
#include "views/marker_spacing.hpp"
#include "views/widget_text.hpp"

namespace lunoval {

namespace {

using ui::DisplayList;
using ui::LayoutContext;
using ui::Point;
using ui::Rect;

// Like a canvas, the chart asks for 10 points along a dimension it is offered nothing in.
constexpr double kIdealLength = 10;
constexpr double kLabelLift = 26;
constexpr ui::Font kLabelFont = ui::Font::system(9, ui::FontWeight::bold);

struct MarkerEvent {
    AltitudeSample moon;
    const char* symbol;
    ui::Color color;
};

ui::Path capsule(ui::Size size) {
    const double r = size.height / 2;
    constexpr double kQuarter = std::numbers::pi / 2;
    return ui::Path{}
        .arc({r, r}, r, kQuarter, 3 * kQuarter)
        .arc({size.width - r, r}, r, -kQuarter, kQuarter)
        .close();
}

// Draws `view` at its ideal size centred on `center`, shifted sideways into `within`.
void placeAround(const ui::View& view, Point center, Rect within, const LayoutContext& context,
                 DisplayList& out) {
    const auto size = view.sizeThatFits({}, context);
    const double x = std::clamp(center.x - size.width / 2, within.x,
                                std::max(within.x, within.maxX() - size.width));
    view.place({x, center.y - size.height / 2, size.width, size.height}, context, out);
}

class ElevationChartNode final : public ui::ViewNode {
  public:
    explicit ElevationChartNode(MoonElevationChart chart) : chart_(std::move(chart)) {}

    ui::Size sizeThatFits(ui::ProposedSize proposal,
                          const LayoutContext& /*context*/) const override {
        return {proposal.width.value_or(kIdealLength), proposal.height.value_or(kIdealLength)};
    }

    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        const auto& day = chart_.day;
        const ElevationScale scale(day.range, day.dayStart, bounds.size());
        const auto palette =
            ChartPalette::make(context.environment.colorScheme, chart_.widgetRenderingMode);
        const auto events = markerEvents(palette);

        ElevationPlot plot{scale,        curvePoints(scale, day.curve), markers(events, scale),
                           noonX(scale), presentPosition(scale),        palette};
        const auto symbols = markerSymbols(events, plot);
        const auto frames = symbolFrames(symbols, plot, bounds, context);
        // The glow follows the present moon wherever its symbol had to go, never cut by an edge.
        if (plot.present) {
            const Point center = frames.back().center();
            plot.present->point = {center.x - bounds.x, center.y - bounds.y};
        }
        ui::Canvas([plot](ui::GraphicsContext& graphics) {
            plot.paint(graphics);
        }).place(bounds, context, out);
        for (std::size_t i = 0; i < symbols.size(); ++i) symbols[i].place(frames[i], context, out);
        if (chart_.showLabel) placeLabels(events, frames, bounds, context, out);
    }

  private:
    [[nodiscard]] std::vector<MarkerEvent> markerEvents(const ChartPalette& palette) const {
        std::vector<MarkerEvent> events;
        if (chart_.day.rise) events.push_back({*chart_.day.rise, "moonrise.fill", palette.rise});
        if (chart_.day.set) events.push_back({*chart_.day.set, "moonset.fill", palette.set});
        return events;
    }

    static std::vector<ChartMarker> markers(const std::vector<MarkerEvent>& events,
                                            const ElevationScale& scale) {
        std::vector<ChartMarker> result;
        result.reserve(events.size());
        for (const auto& event : events) {
            result.push_back(
                {{scale.x(event.moon.instant), scale.y(event.moon.altitude)}, event.color});
        }
        return result;
    }

    [[nodiscard]] std::optional<double> noonX(const ElevationScale& scale) const {
        if (!chart_.showNoon || !chart_.day.noon) return std::nullopt;
        return scale.x(*chart_.day.noon);
    }

    // A present moment off the chart day has no place on it.
    [[nodiscard]] std::optional<PresentPosition> presentPosition(
        const ElevationScale& scale) const {
        if (!chart_.showCurrentPosition) return std::nullopt;
        const auto& present = chart_.day.present;
        const double x = scale.x(present.instant);
        if (x < 0 || x > scale.size().width) return std::nullopt;
        return PresentPosition{{x, scale.y(present.altitude)}, present.altitude >= 0};
    }

    // Rise, set and the present moon each get a place of their own inside the plot, the present
    // moon with room for its glow; the guides keep the true times when close events push their
    // symbols apart.
    static std::vector<Rect> symbolFrames(const std::vector<ui::View>& symbols,
                                          const ElevationPlot& plot, Rect bounds,
                                          const LayoutContext& context) {
        std::vector<MarkerBox> boxes;
        const auto boxAround = [&](const ui::View& symbol, Point center, MarkerFreedom freedom) {
            const auto size = symbol.sizeThatFits({}, context);
            const Point at = offset(center, {bounds.x, bounds.y});
            boxes.push_back(
                {{at.x - size.width / 2, at.y - size.height / 2, size.width, size.height},
                 freedom});
        };
        for (std::size_t i = 0; i < plot.markers.size(); ++i) {
            boxAround(symbols[i], plot.markers[i].point, MarkerFreedom::slides);
        }
        if (plot.present) {
            boxAround(symbols.back(), withinGlow(plot.present->point, bounds.size()),
                      MarkerFreedom::stays);
        }
        return spreadMarkers(boxes, bounds);
    }

    // Where the present moon can stand with the whole width of its glow inside the plot; its
    // height stays on the curve.
    static Point withinGlow(Point point, ui::Size plot) {
        constexpr double r = PresentPosition::kGlowRadius;
        return {std::clamp(point.x, r, std::max(r, plot.width - r)), point.y};
    }

    static std::vector<ui::View> markerSymbols(const std::vector<MarkerEvent>& events,
                                               const ElevationPlot& plot) {
        std::vector<ui::View> symbols;
        symbols.reserve(events.size() + 1);
        for (const auto& event : events) {
            symbols.push_back(ui::Symbol(event.symbol)
                                  .font(ui::Font::system(14, ui::FontWeight::semibold))
                                  .color(event.color));
        }
        if (plot.present) {
            const double opacity = plot.present->aboveHorizon ? 0.95 : 0.4;
            symbols.push_back(ui::Symbol("moon.fill")
                                  .font(ui::Font::system(14, ui::FontWeight::bold))
                                  .color(ui::Color::white().opacity(opacity)));
        }
        return symbols;
    }

    void placeLabels(const std::vector<MarkerEvent>& events, const std::vector<Rect>& symbols,
                     Rect bounds, const LayoutContext& context, DisplayList& out) const {
        for (std::size_t i = 0; i < events.size(); ++i) {
            const auto color = events[i].color.opacity(0.22);
            const ui::View label =
                ui::View(
                    ui::Text(shortTimeText(events[i].moon.instant, chart_.format)).font(kLabelFont))
                    .padding({1, 3, 1, 3})
                    .background(ui::Canvas([color](ui::GraphicsContext& graphics) {
                        graphics.fill(capsule(graphics.size()), color);
                    }));
            const Point symbol = symbols[i].center();
            placeAround(label, {symbol.x, symbol.y - kLabelLift}, bounds, context, out);
        }
    }

    static Point offset(Point point, Point by) { return {point.x + by.x, point.y + by.y}; }

    MoonElevationChart chart_;
};

}  // namespace

ui::View MoonElevationChart::body() const {
    return ui::View(std::make_shared<const ElevationChartNode>(*this));
}

}  // namespace lunoval
