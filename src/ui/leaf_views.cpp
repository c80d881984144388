#include <algorithm>
#include <cmath>

#include "platform/log.hpp"
#include "ui/symbols.hpp"
#include "ui/view.hpp"

namespace lunoval::ui {

namespace {

// Shrunk sizes lie on a quarter-point grid, so texts shrunk alike share their fonts: each new
// size would cost Pango a font set and cairo a glyph cache for the rest of the process.
constexpr double kShrinkGrid = 0.25;

class TextNode final : public ViewNode {
  public:
    TextNode(std::string content, Font font, Color color, int lineLimit, double minimumScaleFactor,
             TextAlignment alignment)
        : content_(std::move(content)),
          font_(font),
          color_(color),
          lineLimit_(lineLimit),
          minimumScaleFactor_(minimumScaleFactor),
          alignment_(alignment) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        const auto font = fittedFont(proposal.width, context.measurer);
        return measure(font, proposal.width, context.measurer).size;
    }

    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        out.commands.emplace_back(DrawText{bounds, content_,
                                           fittedFont(bounds.width, context.measurer), color_,
                                           alignment_, lineLimit_});
    }

  private:
    [[nodiscard]] TextMeasurement measure(const Font& font, std::optional<double> width,
                                          const TextMeasurer& measurer) const {
        const auto limit = width && std::isfinite(*width) ? width : std::nullopt;
        return measurer.measure(content_, font, limit, lineLimit_);
    }

    // Shrinks the font no further than the minimum scale, and only when the text would be cut:
    // to the largest size of the grid that fits, else to the minimum.
    [[nodiscard]] Font fittedFont(std::optional<double> width, const TextMeasurer& measurer) const {
        if (minimumScaleFactor_ >= 1 || !measure(font_, width, measurer).truncated) return font_;
        const Font smallest{font_.size * minimumScaleFactor_, font_.weight};
        const auto onGrid = [&](int step) { return Font{step * kShrinkGrid, font_.weight}; };
        auto fits = static_cast<int>(std::ceil(smallest.size / kShrinkGrid));
        auto cut = static_cast<int>(std::ceil(font_.size / kShrinkGrid));
        if (fits >= cut || measure(onGrid(fits), width, measurer).truncated) return smallest;
        while (cut - fits > 1) {
            const int middle = (fits + cut) / 2;
            (measure(onGrid(middle), width, measurer).truncated ? cut : fits) = middle;
        }
        return onGrid(fits);
    }

    std::string content_;
    Font font_;
    Color color_;
    int lineLimit_;
    double minimumScaleFactor_;
    TextAlignment alignment_;
};

// A symbol's box is a little taller than its font size, as the phone's are.
constexpr double kSymbolHeightPerPoint = 1.15;

class SymbolNode final : public ViewNode {
  public:
    SymbolNode(std::string name, Font font, Color color, bool resizable)
        : name_(std::move(name)),
          font_(font),
          color_(color),
          resizable_(resizable),
          drawing_(findSymbol(name_)) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& /*context*/) const override {
        const auto ideal = idealSize();
        if (!resizable_) return ideal;
        return {proposal.width.value_or(ideal.width), proposal.height.value_or(ideal.height)};
    }

    void place(Rect bounds, const LayoutContext& /*context*/, DisplayList& out) const override {
        if (drawing_ == nullptr) {
            log::line("⚠️ Widget: No symbol named \"" + name_ + "\"");
            return;
        }
        const double scale = std::min(bounds.width / drawing_->aspectRatio, bounds.height);
        const Size drawn{scale * drawing_->aspectRatio, scale};
        const auto origin = Alignment::center.place(drawn, bounds);
        out.commands.emplace_back(DrawSymbol{
            {origin.x, origin.y, drawn.width, drawn.height}, name_, font_.weight, color_});
    }

  private:
    [[nodiscard]] Size idealSize() const {
        const double height = font_.size * kSymbolHeightPerPoint;
        const double aspect = drawing_ != nullptr ? drawing_->aspectRatio : 1.0;
        return {height * aspect, height};
    }

    std::string name_;
    Font font_;
    Color color_;
    bool resizable_;
    const SymbolDrawing* drawing_;
};

// SwiftUI's canvas asks for 10 points when offered nothing.
constexpr double kCanvasIdealLength = 10;

// A canvas draws within its frame only; that also keeps its layers as small as the frame.
class CanvasNode final : public ViewNode {
  public:
    explicit CanvasNode(std::function<void(GraphicsContext&)> paint) : paint_(std::move(paint)) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& /*context*/) const override {
        return {proposal.width.value_or(kCanvasIdealLength),
                proposal.height.value_or(kCanvasIdealLength)};
    }

    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        out.commands.emplace_back(
            BeginGroup{.transform = Transform::translation(bounds.x, bounds.y),
                       .clip = Path::rectangle({0, 0, bounds.width, bounds.height})});
        {
            GraphicsContext graphics(out.commands, bounds.size(), context.environment);
            paint_(graphics);
        }
        out.commands.emplace_back(EndGroup{});
    }

  private:
    std::function<void(GraphicsContext&)> paint_;
};

}  // namespace

Text::operator View() const {
    return View(std::make_shared<const TextNode>(content_, font_, color_, lineLimit_,
                                                 minimumScaleFactor_, alignment_));
}

Symbol::operator View() const {
    return View(std::make_shared<const SymbolNode>(name_, font_, color_, resizable_));
}

View Canvas(std::function<void(GraphicsContext&)> paint) {
    return View(std::make_shared<const CanvasNode>(std::move(paint)));
}

}  // namespace lunoval::ui
