#pragma once

#include <functional>
#include <vector>

#include "ui/display_list.hpp"
#include "ui/environment.hpp"

namespace lunoval::ui {

// The drawing surface a canvas hands its paint routine: it records commands in the canvas's
// own coordinates. A clip or blend mode holds for what is drawn after it through this context.
class GraphicsContext {
  public:
    GraphicsContext(std::vector<Command>& out, Size size, const Environment& environment);
    ~GraphicsContext();
    GraphicsContext(const GraphicsContext&) = delete;
    GraphicsContext& operator=(const GraphicsContext&) = delete;

    [[nodiscard]] Size size() const { return size_; }
    [[nodiscard]] double displayScale() const { return environment_.displayScale; }
    [[nodiscard]] const Environment& environment() const { return environment_; }

    void clip(const Path& path);
    void setBlendMode(BlendMode mode) { blendMode_ = mode; }
    void fill(const Path& path, const Paint& paint, FillRule rule = FillRule::nonZero);
    void stroke(const Path& path, const Paint& paint, const StrokeStyle& style);
    // Draws `body` offscreen and composites the result here as one.
    void drawLayer(const std::function<void(GraphicsContext&)>& body);

  private:
    std::vector<Command>& out_;
    Size size_;
    const Environment& environment_;
    BlendMode blendMode_ = BlendMode::normal;
    int openClips_ = 0;
};

}  // namespace lunoval::ui
