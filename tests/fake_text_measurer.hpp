#pragma once

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
        const double characterWidth = font.size / 2;
        const double natural = characterWidth * static_cast<double>(text.size());
        if (!maxWidth || natural <= *maxWidth) return {{natural, lineHeight(font)}, false};
        const double perLine = std::max(1.0, std::floor(*maxWidth / characterWidth));
        const double lines = std::ceil(static_cast<double>(text.size()) / perLine);
        const double shown = maxLines > 0 ? std::min(lines, static_cast<double>(maxLines)) : lines;
        return {{std::min(natural, perLine * characterWidth), shown * lineHeight(font)},
                shown < lines};
    }

  private:
    static double lineHeight(const ui::Font& font) { return font.size * 1.2; }
};

}  // namespace lunoval::testing
