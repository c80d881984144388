#pragma once

#include "ui/display_list.hpp"

namespace lunoval::ui {

// The list as the host shows it in `mode`: vibrant turns every colour into white with its
// luminance as alpha; accented turns it into `accent` the same way.
DisplayList applyRenderingMode(DisplayList list, RenderingMode mode, Color accent);

}  // namespace lunoval::ui
