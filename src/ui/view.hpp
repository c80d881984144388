#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ui/display_list.hpp"
#include "ui/environment.hpp"
#include "ui/graphics_context.hpp"
#include "ui/text_measurer.hpp"

namespace lunoval::ui {

// A size offered to a view: an absent dimension asks for the view's ideal length, an infinite
// one for the most it can use.
struct ProposedSize {
    std::optional<double> width;
    std::optional<double> height;
};

struct LayoutContext {
    const TextMeasurer& measurer;
    Environment environment;
};

struct EdgeInsets {
    double top = 0;
    double leading = 0;
    double bottom = 0;
    double trailing = 0;

    static EdgeInsets all(double length) { return {length, length, length, length}; }
    static EdgeInsets horizontal(double length) { return {0, length, 0, length}; }
    static EdgeInsets vertical(double length) { return {length, 0, length, 0}; }
};

struct FlexibleFrame {
    std::optional<double> minWidth;
    std::optional<double> maxWidth;
    std::optional<double> minHeight;
    std::optional<double> maxHeight;
    Alignment alignment;
};

class ViewNode;

// A view is an immutable value. Layout has one rule: the parent proposes a size, the child
// answers with the size it takes, and the parent places it.
class View {
  public:
    View();  // draws nothing and takes no space
    explicit View(std::shared_ptr<const ViewNode> node) : node_(std::move(node)) {}

    [[nodiscard]] Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const;
    // Draws the view into `bounds`, which has the size it answered for that proposal.
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const;
    [[nodiscard]] const ViewNode& node() const { return *node_; }

    [[nodiscard]] View frame(std::optional<double> width, std::optional<double> height,
                             Alignment alignment = {}) const;
    [[nodiscard]] View frame(const FlexibleFrame& frame) const;
    [[nodiscard]] View padding(EdgeInsets insets) const;
    [[nodiscard]] View padding(double all) const { return padding(EdgeInsets::all(all)); }
    [[nodiscard]] View opacity(double opacity) const;
    // Turns the drawing about the centre of its frame; layout does not change.
    [[nodiscard]] View rotationEffect(double radians) const;
    // Composites the view as one layer onto what lies below it.
    [[nodiscard]] View blendMode(BlendMode mode) const;
    // Draws the view in a layer of its own first, so blending inside it stays inside it.
    [[nodiscard]] View compositingGroup() const;
    [[nodiscard]] View background(View behind) const;
    [[nodiscard]] View overlay(View above, Alignment alignment = {}) const;
    [[nodiscard]] View widgetURL(std::string url) const;
    // Fills all it is offered with `background` and draws the view centred over it, inside the
    // host's content margin, as the host draws a widget's container background.
    [[nodiscard]] View containerBackground(View background) const;

  private:
    std::shared_ptr<const ViewNode> node_;
};

// The protocol each kind of view implements.
class ViewNode {
  public:
    virtual ~ViewNode() = default;
    [[nodiscard]] virtual Size sizeThatFits(ProposedSize proposal,
                                            const LayoutContext& context) const = 0;
    virtual void place(Rect bounds, const LayoutContext& context, DisplayList& out) const = 0;
    // A spacer grows along its stack's axis and claims nothing across it.
    [[nodiscard]] virtual std::optional<double> spacerMinLength() const { return std::nullopt; }
};

// Text in the system font: one line unless `lineLimit` allows more; when it does not fit, it
// first shrinks down to `minimumScaleFactor` of its size, then is cut with an ellipsis.
class Text {
  public:
    explicit Text(std::string content) : content_(std::move(content)) {}
    Text& font(Font font) {
        font_ = font;
        return *this;
    }
    Text& color(Color color) {
        color_ = color;
        return *this;
    }
    Text& lineLimit(int lines) {
        lineLimit_ = lines;
        return *this;
    }
    Text& minimumScaleFactor(double factor) {
        minimumScaleFactor_ = factor;
        return *this;
    }
    Text& multilineTextAlignment(TextAlignment alignment) {
        alignment_ = alignment;
        return *this;
    }
    operator View() const;  // NOLINT(google-explicit-constructor): reads like the view it is

  private:
    std::string content_;
    Font font_;
    Color color_ = Color::white();
    int lineLimit_ = 1;
    double minimumScaleFactor_ = 1;
    TextAlignment alignment_ = TextAlignment::leading;
};

// A named symbol at the size and weight of a font; `resizable` fills whatever it is given.
class Symbol {
  public:
    explicit Symbol(std::string name) : name_(std::move(name)) {}
    Symbol& font(Font font) {
        font_ = font;
        return *this;
    }
    Symbol& color(Color color) {
        color_ = color;
        return *this;
    }
    Symbol& resizable() {
        resizable_ = true;
        return *this;
    }
    operator View() const;  // NOLINT(google-explicit-constructor)

  private:
    std::string name_;
    Font font_;
    Color color_ = Color::white();
    bool resizable_ = false;
};

View VStack(HorizontalAlignment alignment, double spacing, std::vector<View> children);
View HStack(VerticalAlignment alignment, double spacing, std::vector<View> children);
View ZStack(Alignment alignment, std::vector<View> children);
View Spacer(double minLength = 0);
// Takes the size it is offered and paints it with `paint`.
View Canvas(std::function<void(GraphicsContext&)> paint);

// Lays `view` out in a box of `size` (centred when it takes less) and returns what it draws.
DisplayList render(const View& view, Size size, const LayoutContext& context);

}  // namespace lunoval::ui
