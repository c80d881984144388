#include "ui/rendering_mode.hpp"

#include <type_traits>
#include <variant>
#include <vector>

namespace lunoval::ui {

namespace {

struct ColorMap {
    RenderingMode mode;
    Color accent;

    void apply(Color& color) const {
        const Color tint = mode == RenderingMode::vibrant ? Color::white() : accent;
        color = {tint.red, tint.green, tint.blue, color.luminance() * color.alpha};
    }
    void apply(Paint& paint) const {
        std::visit([this](auto& source) { apply(source); }, paint);
    }
    template <typename Gradient>
    void apply(Gradient& gradient) const {
        for (auto& stop : gradient.stops) apply(stop.color);
    }

    void apply(Command& command) const {
        std::visit(
            [this](auto& c) {
                using Kind = std::decay_t<decltype(c)>;
                if constexpr (std::is_same_v<Kind, FillPath> || std::is_same_v<Kind, StrokePath>) {
                    apply(c.paint);
                } else if constexpr (std::is_same_v<Kind, DrawText> ||
                                     std::is_same_v<Kind, DrawSymbol>) {
                    apply(c.color);
                }
            },
            command);
    }
};

}  // namespace

DisplayList applyRenderingMode(DisplayList list, RenderingMode mode, Color accent) {
    if (mode == RenderingMode::fullColor) return list;
    const ColorMap map{mode, accent};
    // What erases only lends its alpha, so it keeps its colour: mapped, opaque black would
    // become clear and erase nothing.
    std::vector<bool> erasing{false};
    for (auto& command : list.commands) {
        if (const auto* group = std::get_if<BeginGroup>(&command)) {
            erasing.push_back(erasing.back() || group->blendMode == BlendMode::destinationOut);
        } else if (std::holds_alternative<EndGroup>(command)) {
            if (erasing.size() > 1) erasing.pop_back();
        } else if (const auto* fill = std::get_if<FillPath>(&command);
                   !erasing.back() &&
                   !(fill != nullptr && fill->blendMode == BlendMode::destinationOut)) {
            map.apply(command);
        }
    }
    return list;
}

}  // namespace lunoval::ui
