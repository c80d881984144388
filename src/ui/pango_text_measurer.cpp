#include "ui/pango_text_measurer.hpp"

#include "ui/pango_layout.hpp"

namespace lunoval::ui {

namespace {

TextMeasurement layOutAndMeasure(std::string_view text, const Font& font,
                                 std::optional<double> maxWidth, int maxLines) {
    const TextLock lock = lockText();
    const LayoutHandle layout = layOutText(text, font, {.width = maxWidth, .maxLines = maxLines});
    PangoRectangle logical;
    pango_layout_get_extents(layout.get(), nullptr, &logical);
    const int wrapWidth = pango_layout_get_width(layout.get());
    // Even an ellipsis may be wider than the width allowed; newlines can make more lines.
    const bool truncated = pango_layout_is_ellipsized(layout.get()) != FALSE ||
                           (maxLines > 0 && pango_layout_get_line_count(layout.get()) > maxLines) ||
                           (wrapWidth >= 0 && logical.width > wrapWidth);
    return {{pango_units_to_double(logical.width), pango_units_to_double(logical.height)},
            truncated};
}

}  // namespace

TextMeasurement PangoTextMeasurer::measure(std::string_view text, const Font& font,
                                           std::optional<double> maxWidth, int maxLines) const {
    Question question{std::string(text), font.size, font.weight, maxWidth, maxLines};
    {
        const std::scoped_lock lock(mutex_);
        if (const auto known = answers_.find(question); known != answers_.end()) {
            return known->second;
        }
    }
    // Measured outside the lock: two threads that ask at once both measure, alike.
    const auto answer = layOutAndMeasure(text, font, maxWidth, maxLines);
    const std::scoped_lock lock(mutex_);
    answers_.emplace(std::move(question), answer);
    return answer;
}

}  // namespace lunoval::ui
