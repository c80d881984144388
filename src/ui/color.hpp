#pragma once

namespace lunoval::ui {

// Gamma-encoded sRGB with straight alpha, each 0 to 1: the phone's non-linear colour mode.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    static constexpr Color white() { return {1, 1, 1, 1}; }
    static constexpr Color black() { return {0, 0, 0, 1}; }
    static constexpr Color clear() { return {0, 0, 0, 0}; }
    [[nodiscard]] constexpr Color opacity(double factor) const {
        return {red, green, blue, alpha * factor};
    }
    // Rec. 709 luma of the encoded components, as vibrant rendering reads it.
    [[nodiscard]] constexpr double luminance() const {
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    }
    friend bool operator==(const Color&, const Color&) = default;
};

enum class ColorScheme { dark, light };

// The phone's adaptive system colours, which differ by scheme.
enum class SystemColor { gray, cyan, purple, orange, blue, yellow, secondaryLabel };
Color systemColor(SystemColor name, ColorScheme scheme);

// How the widget host shows a widget: as drawn, tinted with one accent, or as white with the
// luminance as alpha (lock screen).
enum class RenderingMode { fullColor, accented, vibrant };

}  // namespace lunoval::ui
