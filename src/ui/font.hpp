#pragma once

namespace lunoval::ui {

enum class FontWeight { regular, medium, semibold, bold };

// The system font (Inter) at a size in points.
struct Font {
    double size = 17;
    FontWeight weight = FontWeight::regular;

    static constexpr Font system(double size, FontWeight weight = FontWeight::regular) {
        return {size, weight};
    }
    // The phone's text styles at the default text size.
    static constexpr Font title() { return {28, FontWeight::regular}; }
    static constexpr Font caption() { return {12, FontWeight::regular}; }
    friend bool operator==(const Font&, const Font&) = default;
};

}  // namespace lunoval::ui
