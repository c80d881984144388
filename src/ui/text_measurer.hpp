#pragma once

#include <optional>
#include <string_view>

#include "ui/font.hpp"
#include "ui/geometry.hpp"

namespace lunoval::ui {

struct TextMeasurement {
    Size size;
    // Lines were cut, or a line was ellipsized, to keep within the limits.
    bool truncated = false;
};

// Lays text out as the painter will: wrapped at word boundaries to `maxWidth` (unbounded when
// absent) in at most `maxLines` lines (0: no limit), the last one ellipsized.
class TextMeasurer {
  public:
    virtual ~TextMeasurer() = default;
    [[nodiscard]] virtual TextMeasurement measure(std::string_view text, const Font& font,
                                                  std::optional<double> maxWidth,
                                                  int maxLines) const = 0;
};

}  // namespace lunoval::ui
