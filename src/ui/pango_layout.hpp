#pragma once

#include <pango/pango.h>

#include <memory>
#include <mutex>
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

// Held for as long as a layout lives: the process's threads share one font map.
using TextLock = std::unique_lock<std::mutex>;
[[nodiscard]] TextLock lockText();

// The one way text is laid out, so that what is measured is what is painted. Lengths are in
// points. Only while holding the text lock.
LayoutHandle layOutText(std::string_view text, const Font& font, const TextBox& box);

}  // namespace lunoval::ui
