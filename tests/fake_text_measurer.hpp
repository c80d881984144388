#pragma once

#include <algorithm>
#include <cmath>

#include "ui/text_measurer.hpp"

namespace lunoval::testing {

// Every character is half the font size wide and a line 1.2 sizes tall; text wraps by
// characters. Widths are exact, so layouts can be checked to the point.
class FakeTextMeasurer final : public ui::TextMeasurer {
  public:
    [[nodiscard]] ui::TextMeasurement measure(std::string_view text, const ui::Font& font,
                                              std::optional<double> maxWidth,
                                              int maxLines) const override {
        const double width = font.size / 2, height = font.size * 1.2;
        const auto length = static_cast<double>(text.size());
        if (!maxWidth || length * width <= *maxWidth) return {{length * width, height}, false};
        const double perLine = std::max(1.0, std::floor(*maxWidth / width));
        const double lines = std::ceil(length / perLine);
        const double shown = maxLines > 0 ? std::min(lines, static_cast<double>(maxLines)) : lines;
        return {{std::min(length, perLine) * width, shown * height}, shown < lines};
    }
};

}  // namespace lunoval::testing
