#include "ui/pango_layout.hpp"

#include <pango/pangocairo.h>

#include <cmath>

namespace lunoval::ui {

namespace {

// Metrics and glyph positions are left unhinted and unrounded so that a layout in points is
// the same whatever scale it is later drawn at.
PangoContext* createContext() {
    PangoFontMap* fontMap = pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT);
    PangoContext* context = pango_font_map_create_context(fontMap);
    g_object_unref(fontMap);  // the context keeps it
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    pango_cairo_context_set_font_options(context, options);
    cairo_font_options_destroy(options);
    pango_cairo_context_set_resolution(context, 72);
    pango_context_set_round_glyph_positions(context, FALSE);
    return context;
}

// One context over one font map for the process, so each font and each size is loaded once
// whatever the number of drawing threads; Pango's objects are not safe to share between
// threads, so every use of them holds the text lock.
PangoContext* sharedContext() {
    static const std::unique_ptr<PangoContext, GObjectUnref> context(createContext());
    return context.get();
}

PangoWeight pangoWeight(FontWeight weight) {
    switch (weight) {
        case FontWeight::regular:
            return PANGO_WEIGHT_NORMAL;
        case FontWeight::medium:
            return PANGO_WEIGHT_MEDIUM;
        case FontWeight::semibold:
            return PANGO_WEIGHT_SEMIBOLD;
        case FontWeight::bold:
            return PANGO_WEIGHT_BOLD;
    }
    return PANGO_WEIGHT_NORMAL;
}

PangoAlignment pangoAlignment(TextAlignment alignment) {
    switch (alignment) {
        case TextAlignment::leading:
            return PANGO_ALIGN_LEFT;  // mirrored for right-to-left text
        case TextAlignment::center:
            return PANGO_ALIGN_CENTER;
        case TextAlignment::trailing:
            return PANGO_ALIGN_RIGHT;
    }
    return PANGO_ALIGN_LEFT;
}

void setFont(PangoLayout* layout, const Font& font) {
    PangoFontDescription* description = pango_font_description_new();
    pango_font_description_set_family_static(description, "Inter");
    pango_font_description_set_weight(description, pangoWeight(font.weight));
    pango_font_description_set_absolute_size(description, font.size * PANGO_SCALE);
    pango_layout_set_font_description(layout, description);
    pango_font_description_free(description);
}

// Absent for no wrapping, as for an unbounded or infinite width. A width that came back from
// measuring, possibly through some arithmetic, must not wrap the text it was measured from.
std::optional<int> wrapWidth(std::optional<double> points) {
    if (!points) return std::nullopt;
    const double units = std::ceil(*points * PANGO_SCALE - 1e-3);
    if (!(units < G_MAXINT)) return std::nullopt;
    return static_cast<int>(std::fmax(units, 0));
}

}  // namespace

TextLock lockText() {
    static std::mutex mutex;
    return TextLock(mutex);
}

LayoutHandle layOutText(std::string_view text, const Font& font, const TextBox& box) {
    LayoutHandle layout(pango_layout_new(sharedContext()));
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    setFont(layout.get(), font);
    pango_layout_set_alignment(layout.get(), pangoAlignment(box.alignment));
    if (const auto width = wrapWidth(box.width)) {
        pango_layout_set_width(layout.get(), *width);
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    }
    if (box.maxLines > 0) {
        pango_layout_set_height(layout.get(), -box.maxLines);
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    }
    return layout;
}

}  // namespace lunoval::ui
