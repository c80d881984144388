#include "ui/symbols.hpp"

#include <algorithm>
#include <array>

#include "ui/symbol_drawings.hpp"

namespace lunoval::ui {

namespace {

using namespace symbol_drawings;

struct Entry {
    std::string_view name;
    SymbolDrawing drawing;
};

// A phase's inverse swaps lit and dark, for a light background.
constexpr std::array kSymbols{
    Entry{"moon", {1, drawMoon}},
    Entry{"moon.fill", {1, drawMoonFill}},
    Entry{"moonrise.fill", {1.2, drawMoonPassage<Heading::up>}},
    Entry{"moonset.fill", {1.2, drawMoonPassage<Heading::down>}},
    Entry{"sunrise.fill", {1.2, drawSunPassage<Heading::up>}},
    Entry{"sunset.fill", {1.2, drawSunPassage<Heading::down>}},
    Entry{"sun.and.horizon.fill", {1.8, drawSunAndHorizon}},
    Entry{"location.slash", {1, drawLocationSlash}},
    Entry{"location.slash.fill", {1, drawLocationSlashFill}},
    Entry{"moonphase.new.moon", {1, drawPhase<Lit::none>}},
    Entry{"moonphase.first.quarter", {1, drawPhase<Lit::right>}},
    Entry{"moonphase.full.moon", {1, drawPhase<Lit::whole>}},
    Entry{"moonphase.last.quarter", {1, drawPhase<Lit::left>}},
    Entry{"moonphase.new.moon.inverse", {1, drawPhase<Lit::whole>}},
    Entry{"moonphase.first.quarter.inverse", {1, drawPhase<Lit::left>}},
    Entry{"moonphase.full.moon.inverse", {1, drawPhase<Lit::none>}},
    Entry{"moonphase.last.quarter.inverse", {1, drawPhase<Lit::right>}},
};

// Line width per point of height, heavier as the font is.
double lineWidthPerPoint(FontWeight weight) {
    switch (weight) {
        case FontWeight::regular:
            return 0.085;
        case FontWeight::medium:
            return 0.1;
        case FontWeight::semibold:
            return 0.115;
        case FontWeight::bold:
            return 0.13;
    }
    return 0.085;
}

// The largest box of `aspectRatio` centred in `frame`, so circles stay round.
Rect fitted(Rect frame, double aspectRatio) {
    const double height = std::min(frame.height, frame.width / aspectRatio);
    const Size size{height * aspectRatio, height};
    return {frame.x + (frame.width - size.width) / 2, frame.y + (frame.height - size.height) / 2,
            size.width, size.height};
}

}  // namespace

const SymbolDrawing* findSymbol(std::string_view name) {
    const auto* const found = std::ranges::find(kSymbols, name, &Entry::name);
    return found == kSymbols.end() ? nullptr : &found->drawing;
}

std::vector<std::string_view> symbolNames() {
    std::vector<std::string_view> names;
    names.reserve(kSymbols.size());
    for (const auto& entry : kSymbols) names.push_back(entry.name);
    return names;
}

std::vector<Command> symbolCommands(const DrawSymbol& symbol, const Environment& environment) {
    const SymbolDrawing* drawing = findSymbol(symbol.name);
    if (drawing == nullptr) return {};
    const Rect box = fitted(symbol.frame, drawing->aspectRatio);
    std::vector<Command> commands{BeginGroup{.transform = Transform::translation(box.x, box.y)}};
    {
        GraphicsContext context(commands, box.size(), environment);
        drawing->draw(context, symbol.color, box.height * lineWidthPerPoint(symbol.weight));
    }
    commands.emplace_back(EndGroup{});
    return commands;
}

}  // namespace lunoval::ui
