#include "ui/view.hpp"

#include <algorithm>
#include <limits>

namespace lunoval::ui {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class EmptyNode final : public ViewNode {
  public:
    Size sizeThatFits(ProposedSize /*proposal*/, const LayoutContext& /*context*/) const override {
        return {};
    }
    void place(Rect /*bounds*/, const LayoutContext& /*context*/,
               DisplayList& /*out*/) const override {}
};

// Draws a child inside a group: a layer with opacity or blend mode, or a turn.
class GroupNode final : public ViewNode {
  public:
    GroupNode(View child, BeginGroup group, bool rotates, double radians)
        : child_(std::move(child)),
          group_(std::move(group)),
          rotates_(rotates),
          radians_(radians) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        return child_.sizeThatFits(proposal, context);
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        auto group = group_;
        if (rotates_) group.transform = Transform::rotation(radians_, bounds.center());
        out.commands.emplace_back(group);
        child_.place(bounds, context, out);
        out.commands.emplace_back(EndGroup{});
    }

  private:
    View child_;
    BeginGroup group_;
    bool rotates_;
    double radians_;
};

class FixedFrameNode final : public ViewNode {
  public:
    // NOLINTNEXTLINE(bugprone-easily-swappable-parameters): width then height, as every size
    FixedFrameNode(View child, std::optional<double> width, std::optional<double> height,
                   Alignment alignment)
        : child_(std::move(child)), width_(width), height_(height), alignment_(alignment) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        const auto inner = child_.sizeThatFits(childProposal(proposal), context);
        return {width_.value_or(inner.width), height_.value_or(inner.height)};
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        const auto inner =
            child_.sizeThatFits(childProposal({bounds.width, bounds.height}), context);
        const auto origin = alignment_.place(inner, bounds);
        child_.place({origin.x, origin.y, inner.width, inner.height}, context, out);
    }

  private:
    [[nodiscard]] ProposedSize childProposal(ProposedSize proposal) const {
        return {width_ ? width_ : proposal.width, height_ ? height_ : proposal.height};
    }
    View child_;
    std::optional<double> width_;
    std::optional<double> height_;
    Alignment alignment_;
};

// Clamps an offered length into the frame's bounds; the frame then takes the offer (or, with
// no offer, the child's length) within those bounds.
std::optional<double> clampProposal(std::optional<double> offered, std::optional<double> minimum,
                                    std::optional<double> maximum) {
    if (!offered) return offered;
    return std::clamp(*offered, minimum.value_or(0.0),
                      std::max(maximum.value_or(kInfinity), minimum.value_or(0.0)));
}

double frameLength(std::optional<double> offered, double child, std::optional<double> minimum,
                   std::optional<double> maximum) {
    if (!minimum && !maximum) return child;
    const double low = minimum.value_or(child);
    const double high = std::max(maximum.value_or(child), low);
    return std::clamp(offered.value_or(child), low, high);
}

class FlexibleFrameNode final : public ViewNode {
  public:
    FlexibleFrameNode(View child, FlexibleFrame frame) : child_(std::move(child)), frame_(frame) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        const auto inner = child_.sizeThatFits(childProposal(proposal), context);
        return {frameLength(proposal.width, inner.width, frame_.minWidth, frame_.maxWidth),
                frameLength(proposal.height, inner.height, frame_.minHeight, frame_.maxHeight)};
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        const auto inner =
            child_.sizeThatFits(childProposal({bounds.width, bounds.height}), context);
        const auto origin = frame_.alignment.place(inner, bounds);
        child_.place({origin.x, origin.y, inner.width, inner.height}, context, out);
    }

  private:
    [[nodiscard]] ProposedSize childProposal(ProposedSize proposal) const {
        return {clampProposal(proposal.width, frame_.minWidth, frame_.maxWidth),
                clampProposal(proposal.height, frame_.minHeight, frame_.maxHeight)};
    }
    View child_;
    FlexibleFrame frame_;
};

std::optional<double> inset(std::optional<double> length, double amount) {
    if (!length) return length;
    return std::max(0.0, *length - amount);
}

class PaddingNode final : public ViewNode {
  public:
    PaddingNode(View child, EdgeInsets insets) : child_(std::move(child)), insets_(insets) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        const auto inner = child_.sizeThatFits(
            {inset(proposal.width, horizontal()), inset(proposal.height, vertical())}, context);
        return {inner.width + horizontal(), inner.height + vertical()};
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        child_.place(
            {bounds.x + insets_.leading, bounds.y + insets_.top,
             std::max(0.0, bounds.width - horizontal()), std::max(0.0, bounds.height - vertical())},
            context, out);
    }

  private:
    [[nodiscard]] double horizontal() const { return insets_.leading + insets_.trailing; }
    [[nodiscard]] double vertical() const { return insets_.top + insets_.bottom; }
    View child_;
    EdgeInsets insets_;
};

// A second view behind or above a base view, sized to the base.
class LayeredNode final : public ViewNode {
  public:
    LayeredNode(View base, View other, Alignment alignment, bool above)
        : base_(std::move(base)), other_(std::move(other)), alignment_(alignment), above_(above) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        return base_.sizeThatFits(proposal, context);
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        if (!above_) placeOther(bounds, context, out);
        base_.place(bounds, context, out);
        if (above_) placeOther(bounds, context, out);
    }

  private:
    void placeOther(Rect bounds, const LayoutContext& context, DisplayList& out) const {
        const auto size = other_.sizeThatFits({bounds.width, bounds.height}, context);
        const auto origin = alignment_.place(size, bounds);
        other_.place({origin.x, origin.y, size.width, size.height}, context, out);
    }
    View base_;
    View other_;
    Alignment alignment_;
    bool above_;
};

class URLNode final : public ViewNode {
  public:
    URLNode(View child, std::string url) : child_(std::move(child)), url_(std::move(url)) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        return child_.sizeThatFits(proposal, context);
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        out.widgetURL = url_;
        child_.place(bounds, context, out);
    }

  private:
    View child_;
    std::string url_;
};

class ContainerBackgroundNode final : public ViewNode {
  public:
    ContainerBackgroundNode(View content, View background)
        : content_(std::move(content)), background_(std::move(background)) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        const auto content = content_.sizeThatFits(proposal, context);
        return {proposal.width.value_or(content.width), proposal.height.value_or(content.height)};
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        background_.place(bounds, context, out);
        const double margin = context.environment.contentMargin;
        const Rect inner{bounds.x + margin, bounds.y + margin,
                         std::max(0.0, bounds.width - 2 * margin),
                         std::max(0.0, bounds.height - 2 * margin)};
        const auto size = content_.sizeThatFits({inner.width, inner.height}, context);
        const auto origin = Alignment::center.place(size, inner);
        content_.place({origin.x, origin.y, size.width, size.height}, context, out);
    }

  private:
    View content_;
    View background_;
};

}  // namespace

View::View() : node_(std::make_shared<const EmptyNode>()) {}

Size View::sizeThatFits(ProposedSize proposal, const LayoutContext& context) const {
    return node_->sizeThatFits(proposal, context);
}

void View::place(Rect bounds, const LayoutContext& context, DisplayList& out) const {
    node_->place(bounds, context, out);
}

View View::frame(std::optional<double> width, std::optional<double> height,
                 Alignment alignment) const {
    return View(std::make_shared<const FixedFrameNode>(*this, width, height, alignment));
}

View View::frame(const FlexibleFrame& frame) const {
    return View(std::make_shared<const FlexibleFrameNode>(*this, frame));
}

View View::padding(EdgeInsets insets) const {
    return View(std::make_shared<const PaddingNode>(*this, insets));
}

View View::opacity(double opacity) const {
    return View(std::make_shared<const GroupNode>(
        *this, BeginGroup{.isLayer = true, .opacity = opacity}, false, 0.0));
}

View View::rotationEffect(double radians) const {
    return View(std::make_shared<const GroupNode>(*this, BeginGroup{}, true, radians));
}

View View::blendMode(BlendMode mode) const {
    return View(std::make_shared<const GroupNode>(
        *this, BeginGroup{.isLayer = true, .blendMode = mode}, false, 0.0));
}

View View::compositingGroup() const {
    return View(std::make_shared<const GroupNode>(*this, BeginGroup{.isLayer = true}, false, 0.0));
}

View View::background(View behind) const {
    return View(std::make_shared<const LayeredNode>(*this, std::move(behind), Alignment{}, false));
}

View View::overlay(View above, Alignment alignment) const {
    return View(std::make_shared<const LayeredNode>(*this, std::move(above), alignment, true));
}

View View::widgetURL(std::string url) const {
    return View(std::make_shared<const URLNode>(*this, std::move(url)));
}

View View::containerBackground(View background) const {
    return View(std::make_shared<const ContainerBackgroundNode>(*this, std::move(background)));
}

DisplayList render(const View& view, Size size, const LayoutContext& context) {
    DisplayList list{.size = size};
    const auto taken = view.sizeThatFits({size.width, size.height}, context);
    const auto origin = Alignment::center.place(taken, {0, 0, size.width, size.height});
    view.place({origin.x, origin.y, taken.width, taken.height}, context, list);
    return list;
}

}  // namespace lunoval::ui
