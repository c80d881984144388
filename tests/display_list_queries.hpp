#pragma once

#include <string>
#include <variant>
#include <vector>

#include "ui/display_list.hpp"

namespace lunoval::testing {

// The commands of one kind, in drawing order.
template <typename Wanted>
std::vector<Wanted> all(const std::vector<ui::Command>& commands) {
    std::vector<Wanted> found;
    for (const auto& command : commands) {
        if (const auto* match = std::get_if<Wanted>(&command)) found.push_back(*match);
    }
    return found;
}

template <typename Wanted>
std::vector<Wanted> all(const ui::DisplayList& list) {
    return all<Wanted>(list.commands);
}

// What the list writes and the symbols it draws, in order.
inline std::vector<std::string> texts(const ui::DisplayList& list) {
    std::vector<std::string> found;
    for (const auto& text : all<ui::DrawText>(list)) found.push_back(text.text);
    return found;
}

inline std::vector<std::string> symbols(const ui::DisplayList& list) {
    std::vector<std::string> found;
    for (const auto& symbol : all<ui::DrawSymbol>(list)) found.push_back(symbol.name);
    return found;
}

}  // namespace lunoval::testing
