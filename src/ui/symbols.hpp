#pragma once

#include <string_view>
#include <vector>

#include "ui/display_list.hpp"
#include "ui/graphics_context.hpp"

namespace lunoval::ui {

// One of our own drawings of the system symbols the widgets name.
struct SymbolDrawing {
    double aspectRatio = 1;  // width over height of the box it is drawn in
    // Draws in the context's whole size with `color`; strokes are `lineWidth` wide.
    void (*draw)(GraphicsContext& context, Color color, double lineWidth) = nullptr;
};

// Absent (null) for a name we have no drawing of.
const SymbolDrawing* findSymbol(std::string_view name);
std::vector<std::string_view> symbolNames();

// The commands that draw `symbol` at its frame; none for an unknown name.
std::vector<Command> symbolCommands(const DrawSymbol& symbol, const Environment& environment);

}  // namespace lunoval::ui
