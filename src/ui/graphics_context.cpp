#include "ui/graphics_context.hpp"

namespace lunoval::ui {

GraphicsContext::GraphicsContext(std::vector<Command>& out, Size size,
                                 const Environment& environment)
    : out_(out), size_(size), environment_(environment) {}

GraphicsContext::~GraphicsContext() {
    for (; openClips_ > 0; --openClips_) out_.emplace_back(EndGroup{});
}

void GraphicsContext::clip(const Path& path) {
    out_.emplace_back(BeginGroup{.clip = path});
    ++openClips_;
}

void GraphicsContext::fill(const Path& path, const Paint& paint, FillRule rule) {
    out_.emplace_back(FillPath{path, paint, rule, blendMode_});
}

void GraphicsContext::stroke(const Path& path, const Paint& paint, const StrokeStyle& style) {
    out_.emplace_back(StrokePath{path, paint, style});
}

void GraphicsContext::drawLayer(const std::function<void(GraphicsContext&)>& body) {
    out_.emplace_back(BeginGroup{.isLayer = true, .blendMode = blendMode_});
    {
        GraphicsContext layer(out_, size_, environment_);
        body(layer);
    }
    out_.emplace_back(EndGroup{});
}

}  // namespace lunoval::ui
