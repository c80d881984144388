#pragma once

#include <map>
#include <mutex>
#include <string>

#include "ui/text_measurer.hpp"

namespace lunoval::ui {

// Measures with Pango and fontconfig in Inter, with hinting off so that sizes do not depend on
// the display scale; the painter lays text out with the same settings.
// Layout asks about the same text many times (stacks weigh each child twice, shrinking text
// searches its size), so each measurer remembers its answers. Threads may share a measurer.
class PangoTextMeasurer final : public TextMeasurer {
  public:
    [[nodiscard]] TextMeasurement measure(std::string_view text, const Font& font,
                                          std::optional<double> maxWidth,
                                          int maxLines) const override;

  private:
    struct Question {
        std::string text;
        double size;
        FontWeight weight;
        std::optional<double> maxWidth;
        int maxLines;
        // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 misreads a defaulted <=>
        auto operator<=>(const Question&) const = default;
    };
    mutable std::mutex mutex_;
    mutable std::map<Question, TextMeasurement> answers_;
};

}  // namespace lunoval::ui
