#pragma once

#include <pango/pango.h>

#include <memory>
#include <optional>
#include <string_view>

#include "ui/display_list.hpp"
#include "ui/font.hpp"

namespace lunoval::ui {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using LayoutHandle = std::unique_ptr<PangoLayout, GObjectUnref>;

struct TextBox {
    std::optional<double> width;  // unbounded when absent
    int maxLines = 0;             // 0: no limit
    TextAlignment alignment = TextAlignment::leading;
};

// The one way text is laid out, so that what is measured is what is painted. Lengths are in
// points. A layout belongs to the thread that made it.
LayoutHandle layOutText(std::string_view text, const Font& font, const TextBox& box);

}  // namespace lunoval::ui
