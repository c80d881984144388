#pragma once

#include "ui/text_measurer.hpp"

namespace lunoval::ui {

// Measures with Pango and fontconfig in Inter, with hinting off so that sizes do not depend on
// the display scale; the painter lays text out with the same settings.
class PangoTextMeasurer final : public TextMeasurer {
  public:
    [[nodiscard]] TextMeasurement measure(std::string_view text, const Font& font,
                                          std::optional<double> maxWidth,
                                          int maxLines) const override;
};

}  // namespace lunoval::ui
