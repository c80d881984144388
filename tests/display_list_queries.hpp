#pragma once

#include <string>
#include <variant>
#include <vector>

#include "ui/display_list.hpp"

namespace lunoval::testing {

// The commands of one kind, in drawing order.
template <typename Wanted>
std::vector<Wanted> all(const ui::DisplayList& list) {
    std::vector<Wanted> found;
    for (const auto& command : list.commands) {
        if (const auto* match = std::get_if<Wanted>(&command)) found.push_back(*match);
    }
    return found;
}

// What the list writes, in order.
inline std::vector<std::string> texts(const ui::DisplayList& list) {
    std::vector<std::string> found;
    for (const auto& text : all<ui::DrawText>(list)) found.push_back(text.text);
    return found;
}

}  // namespace lunoval::testing
