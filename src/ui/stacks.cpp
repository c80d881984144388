#include <algorithm>
#include <limits>
#include <numeric>

#include "ui/view.hpp"

namespace lunoval::ui {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

enum class Axis { horizontal, vertical };

double along(Axis axis, Size size) {
    return axis == Axis::horizontal ? size.width : size.height;
}
double across(Axis axis, Size size) {
    return axis == Axis::horizontal ? size.height : size.width;
}
std::optional<double> along(Axis axis, ProposedSize p) {
    return axis == Axis::horizontal ? p.width : p.height;
}
std::optional<double> across(Axis axis, ProposedSize p) {
    return axis == Axis::horizontal ? p.height : p.width;
}
Size sizeOf(Axis axis, double alongLength, double acrossLength) {
    return axis == Axis::horizontal ? Size{alongLength, acrossLength}
                                    : Size{acrossLength, alongLength};
}
ProposedSize proposalOf(Axis axis, std::optional<double> alongLength,
                        std::optional<double> acrossLength) {
    return axis == Axis::horizontal ? ProposedSize{alongLength, acrossLength}
                                    : ProposedSize{acrossLength, alongLength};
}

// A row or column. Children are offered the space left in order of how little they can
// stretch, so fixed views get what they need and flexible ones share the rest.
class StackNode final : public ViewNode {
  public:
    StackNode(Axis axis, int crossAlignment, double spacing, std::vector<View> children)
        : axis_(axis),
          crossAlignment_(crossAlignment),
          spacing_(spacing),
          children_(std::move(children)) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        const auto sizes = childSizes(proposal, context);
        double length = totalSpacing();
        double thickness = 0;
        for (const auto& size : sizes) {
            length += along(axis_, size);
            thickness = std::max(thickness, across(axis_, size));
        }
        return sizeOf(axis_, length, thickness);
    }

    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        const auto sizes = childSizes({bounds.width, bounds.height}, context);
        double cursor = axis_ == Axis::horizontal ? bounds.x : bounds.y;
        const double start = axis_ == Axis::horizontal ? bounds.y : bounds.x;
        const double room = across(axis_, bounds.size());
        for (std::size_t i = 0; i < children_.size(); ++i) {
            const double offset = crossOffset(across(axis_, sizes[i]), room);
            const Rect rect = axis_ == Axis::horizontal
                                  ? Rect{cursor, start + offset, sizes[i].width, sizes[i].height}
                                  : Rect{start + offset, cursor, sizes[i].width, sizes[i].height};
            children_[i].place(rect, context, out);
            cursor += along(axis_, sizes[i]) + spacing_;
        }
    }

  private:
    [[nodiscard]] double totalSpacing() const {
        return children_.empty() ? 0 : spacing_ * static_cast<double>(children_.size() - 1);
    }

    [[nodiscard]] double crossOffset(double length, double room) const {
        return crossAlignment_ == 0   ? 0
               : crossAlignment_ == 1 ? (room - length) / 2
                                      : room - length;
    }

    [[nodiscard]] Size childSize(const View& child, std::optional<double> offered,
                                 std::optional<double> acrossLength,
                                 const LayoutContext& context) const {
        if (const auto minLength = child.node().spacerMinLength()) {
            const double length = offered && std::isfinite(*offered) ? *offered : 0.0;
            return sizeOf(axis_, std::max(*minLength, length), 0);
        }
        return child.sizeThatFits(proposalOf(axis_, offered, acrossLength), context);
    }

    [[nodiscard]] std::vector<double> flexibilities(std::optional<double> acrossLength,
                                                    const LayoutContext& context) const {
        std::vector<double> result;
        for (const auto& child : children_) {
            if (child.node().spacerMinLength()) {
                result.push_back(kInfinity);
                continue;
            }
            const double least = along(axis_, childSize(child, 0.0, acrossLength, context));
            const double most = along(axis_, childSize(child, kInfinity, acrossLength, context));
            result.push_back(most - least);
        }
        return result;
    }

    std::vector<Size> childSizes(ProposedSize proposal, const LayoutContext& context) const {
        const auto acrossLength = across(axis_, proposal);
        std::vector<Size> sizes(children_.size());
        const auto offered = along(axis_, proposal);
        if (!offered) {
            for (std::size_t i = 0; i < children_.size(); ++i) {
                sizes[i] = childSize(children_[i], std::nullopt, acrossLength, context);
            }
            return sizes;
        }
        const auto flexibility = flexibilities(acrossLength, context);
        std::vector<std::size_t> order(children_.size());
        std::iota(order.begin(), order.end(), 0);
        std::ranges::stable_sort(order, {}, [&](std::size_t i) { return flexibility[i]; });
        double remaining = *offered - totalSpacing();
        auto left = static_cast<double>(children_.size());
        for (const auto i : order) {
            const double share = std::max(0.0, remaining / left);
            sizes[i] = childSize(children_[i], share, acrossLength, context);
            remaining -= along(axis_, sizes[i]);
            left -= 1;
        }
        return sizes;
    }

    Axis axis_;
    int crossAlignment_;
    double spacing_;
    std::vector<View> children_;
};

class ZStackNode final : public ViewNode {
  public:
    ZStackNode(Alignment alignment, std::vector<View> children)
        : alignment_(alignment), children_(std::move(children)) {}

    Size sizeThatFits(ProposedSize proposal, const LayoutContext& context) const override {
        Size size;
        for (const auto& child : children_) {
            const auto childSize = child.sizeThatFits(proposal, context);
            size = {std::max(size.width, childSize.width), std::max(size.height, childSize.height)};
        }
        return size;
    }
    void place(Rect bounds, const LayoutContext& context, DisplayList& out) const override {
        for (const auto& child : children_) {
            const auto size = child.sizeThatFits({bounds.width, bounds.height}, context);
            const auto origin = alignment_.place(size, bounds);
            child.place({origin.x, origin.y, size.width, size.height}, context, out);
        }
    }

  private:
    Alignment alignment_;
    std::vector<View> children_;
};

class SpacerNode final : public ViewNode {
  public:
    explicit SpacerNode(double minLength) : minLength_(minLength) {}

    // Outside a stack a spacer takes what it is offered.
    Size sizeThatFits(ProposedSize proposal, const LayoutContext& /*context*/) const override {
        return {proposal.width.value_or(minLength_), proposal.height.value_or(minLength_)};
    }
    void place(Rect /*bounds*/, const LayoutContext& /*context*/,
               DisplayList& /*out*/) const override {}
    std::optional<double> spacerMinLength() const override { return minLength_; }

  private:
    double minLength_;
};

}  // namespace

View VStack(HorizontalAlignment alignment, double spacing, std::vector<View> children) {
    return View(std::make_shared<const StackNode>(Axis::vertical, static_cast<int>(alignment),
                                                  spacing, std::move(children)));
}

View HStack(VerticalAlignment alignment, double spacing, std::vector<View> children) {
    return View(std::make_shared<const StackNode>(Axis::horizontal, static_cast<int>(alignment),
                                                  spacing, std::move(children)));
}

View ZStack(Alignment alignment, std::vector<View> children) {
    return View(std::make_shared<const ZStackNode>(alignment, std::move(children)));
}

View Spacer(double minLength) {
    return View(std::make_shared<const SpacerNode>(minLength));
}

}  // namespace lunoval::ui
