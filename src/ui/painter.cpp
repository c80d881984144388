#include "ui/painter.hpp"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <span>
#include <type_traits>
#include <vector>

#include "ui/pango_layout.hpp"
#include "ui/symbols.hpp"

namespace lunoval::ui {

namespace {

struct PatternDestroy {
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using PatternHandle = std::unique_ptr<cairo_pattern_t, PatternDestroy>;

cairo_operator_t cairoOperator(BlendMode mode) {
    return mode == BlendMode::destinationOut ? CAIRO_OPERATOR_DEST_OUT : CAIRO_OPERATOR_OVER;
}

bool positive(double length) {
    return length > 0 && std::isfinite(length);
}

void appendEllipse(cairo_t* cairo, const Rect& in) {
    const Rect rect = in.standardized();
    if (!positive(rect.width) || !positive(rect.height)) return;
    const Point center = rect.center();
    cairo_new_sub_path(cairo);
    cairo_save(cairo);
    cairo_translate(cairo, center.x, center.y);
    cairo_scale(cairo, rect.width / 2, rect.height / 2);
    cairo_arc(cairo, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_restore(cairo);
    cairo_close_path(cairo);
}

void appendElement(cairo_t* cairo, const Path::Element& element) {
    std::visit(
        [cairo](const auto& piece) {
            using Piece = std::decay_t<decltype(piece)>;
            if constexpr (std::is_same_v<Piece, Path::MoveTo>) {
                cairo_move_to(cairo, piece.to.x, piece.to.y);
            } else if constexpr (std::is_same_v<Piece, Path::LineTo>) {
                cairo_line_to(cairo, piece.to.x, piece.to.y);
            } else if constexpr (std::is_same_v<Piece, Path::CurveTo>) {
                cairo_curve_to(cairo, piece.control1.x, piece.control1.y, piece.control2.x,
                               piece.control2.y, piece.to.x, piece.to.y);
            } else if constexpr (std::is_same_v<Piece, Path::Arc>) {
                // Increasing angles turn clockwise on a y-down canvas, as the path means.
                cairo_arc(cairo, piece.center.x, piece.center.y, piece.radius, piece.startAngle,
                          piece.endAngle);
            } else if constexpr (std::is_same_v<Piece, Path::Close>) {
                cairo_close_path(cairo);
            } else if constexpr (std::is_same_v<Piece, Path::Ellipse>) {
                appendEllipse(cairo, piece.in);
            } else {
                const Rect rect = piece.rect.standardized();
                cairo_rectangle(cairo, rect.x, rect.y, rect.width, rect.height);
            }
        },
        element);
}

void setPath(cairo_t* cairo, const Path& path) {
    cairo_new_path(cairo);
    for (const auto& element : path.elements) appendElement(cairo, element);
}

void addStops(cairo_pattern_t* pattern, const std::vector<GradientStop>& stops) {
    for (const auto& stop : stops) {
        const Color& c = stop.color;
        cairo_pattern_add_color_stop_rgba(pattern, stop.location, c.red, c.green, c.blue, c.alpha);
    }
}

PatternHandle gradientPattern(const LinearGradient& gradient) {
    PatternHandle pattern(cairo_pattern_create_linear(gradient.start.x, gradient.start.y,
                                                      gradient.end.x, gradient.end.y));
    addStops(pattern.get(), gradient.stops);
    return pattern;
}

PatternHandle gradientPattern(const RadialGradient& gradient) {
    const Point c = gradient.center;
    PatternHandle pattern(
        cairo_pattern_create_radial(c.x, c.y, gradient.startRadius, c.x, c.y, gradient.endRadius));
    addStops(pattern.get(), gradient.stops);
    return pattern;
}

void setSource(cairo_t* cairo, const Color& color) {
    cairo_set_source_rgba(cairo, color.red, color.green, color.blue, color.alpha);
}

template <typename Gradient>
void setSource(cairo_t* cairo, const Gradient& gradient) {
    const PatternHandle pattern = gradientPattern(gradient);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
    cairo_set_source(cairo, pattern.get());
}

void setPaint(cairo_t* cairo, const Paint& paint) {
    std::visit([cairo](const auto& source) { setSource(cairo, source); }, paint);
}

// Cairo refuses a negative length or a pattern of nothing but zeros; such a dash draws solid.
void setDash(cairo_t* cairo, const std::vector<double>& dash) {
    const bool usable = std::none_of(dash.begin(), dash.end(), [](double l) { return l < 0; }) &&
                        std::any_of(dash.begin(), dash.end(), [](double l) { return l > 0; });
    cairo_set_dash(cairo, usable ? dash.data() : nullptr,
                   usable ? static_cast<int>(dash.size()) : 0, 0);
}

bool invertible(const cairo_matrix_t& matrix) {
    cairo_matrix_t inverse = matrix;
    return cairo_matrix_invert(&inverse) == CAIRO_STATUS_SUCCESS;
}

// Draws commands in order, keeping the nesting of groups on the cairo state stack.
class Walker {
  public:
    Walker(cairo_t* cairo, const Environment& environment)
        : cairo_(cairo), environment_(environment) {}

    void draw(std::span<const Command> commands) {
        for (const auto& command : commands) {
            if (hiddenDepth_ > 0) {
                skip(command);
            } else {
                std::visit([this](const auto& c) { handle(c); }, command);
            }
        }
        while (!open_.empty()) close();
    }

  private:
    struct OpenGroup {
        bool isLayer;
        double opacity;
        BlendMode blendMode;
    };

    // A group that collapses space to nothing draws nothing, and cairo would refuse its matrix.
    void skip(const Command& command) {
        if (std::holds_alternative<BeginGroup>(command)) ++hiddenDepth_;
        if (std::holds_alternative<EndGroup>(command)) --hiddenDepth_;
    }

    void handle(const BeginGroup& group) {
        const Transform& t = group.transform;
        const cairo_matrix_t matrix{t.a, t.b, t.c, t.d, t.tx, t.ty};
        if (!invertible(matrix)) {
            hiddenDepth_ = 1;
            return;
        }
        cairo_save(cairo_);
        cairo_transform(cairo_, &matrix);
        if (group.clip) {
            setPath(cairo_, *group.clip);
            cairo_set_fill_rule(cairo_, CAIRO_FILL_RULE_WINDING);
            cairo_clip(cairo_);
        }
        if (group.isLayer) cairo_push_group(cairo_);
        open_.push_back({group.isLayer, group.opacity, group.blendMode});
    }

    void handle(const EndGroup& /*end*/) {
        if (!open_.empty()) close();
    }

    void close() {
        const OpenGroup group = open_.back();
        open_.pop_back();
        if (group.isLayer) {
            cairo_pop_group_to_source(cairo_);
            cairo_set_operator(cairo_, cairoOperator(group.blendMode));
            cairo_paint_with_alpha(cairo_, group.opacity);
        }
        cairo_restore(cairo_);
    }

    void handle(const FillPath& fill) {
        setPaint(cairo_, fill.paint);
        setPath(cairo_, fill.path);
        cairo_set_fill_rule(cairo_, fill.rule == FillRule::evenOdd ? CAIRO_FILL_RULE_EVEN_ODD
                                                                   : CAIRO_FILL_RULE_WINDING);
        cairo_set_operator(cairo_, cairoOperator(fill.blendMode));
        cairo_fill(cairo_);
        cairo_set_operator(cairo_, CAIRO_OPERATOR_OVER);
    }

    void handle(const StrokePath& stroke) {
        const StrokeStyle& style = stroke.style;
        if (!(style.lineWidth > 0)) return;
        setPaint(cairo_, stroke.paint);
        setPath(cairo_, stroke.path);
        cairo_set_line_width(cairo_, style.lineWidth);
        cairo_set_miter_limit(cairo_, style.miterLimit);
        setDash(cairo_, style.dash);
        cairo_stroke(cairo_);
    }

    void handle(const DrawText& text) {
        const TextLock lock = lockText();
        const LayoutHandle layout = layOutText(
            text.text, text.font,
            {.width = text.frame.width, .maxLines = text.maxLines, .alignment = text.alignment});
        setSource(cairo_, text.color);
        cairo_move_to(cairo_, text.frame.x, text.frame.y);
        pango_cairo_show_layout(cairo_, layout.get());
        cairo_new_path(cairo_);
    }

    void handle(const DrawSymbol& symbol) {
        Walker(cairo_, environment_).draw(symbolCommands(symbol, environment_));
    }

    cairo_t* cairo_;
    const Environment& environment_;
    std::vector<OpenGroup> open_;
    int hiddenDepth_ = 0;
};

}  // namespace

void paint(const DisplayList& list, cairo_t* cairo, const Environment& environment) {
    cairo_save(cairo);
    cairo_set_operator(cairo, CAIRO_OPERATOR_OVER);
    Walker(cairo, environment).draw(list.commands);
    cairo_restore(cairo);
}

}  // namespace lunoval::ui
