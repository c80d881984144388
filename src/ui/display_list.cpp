#include "ui/display_list.hpp"

namespace lunoval::ui {

std::vector<GradientStop> evenlySpaced(const std::vector<Color>& colors) {
    std::vector<GradientStop> stops;
    const auto last = colors.size() > 1 ? static_cast<double>(colors.size() - 1) : 1.0;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        stops.push_back({colors[i], static_cast<double>(i) / last});
    }
    return stops;
}

}  // namespace lunoval::ui
