#include "ui/color.hpp"

namespace lunoval::ui {

namespace {

constexpr Color rgb(int red, int green, int blue, double alpha = 1) {
    return {red / 255.0, green / 255.0, blue / 255.0, alpha};
}

}  // namespace

Color systemColor(SystemColor name, ColorScheme scheme) {
    const bool dark = scheme == ColorScheme::dark;
    switch (name) {
        case SystemColor::gray:
            return rgb(142, 142, 147);
        case SystemColor::cyan:
            return dark ? rgb(100, 210, 255) : rgb(50, 173, 230);
        case SystemColor::purple:
            return dark ? rgb(191, 90, 242) : rgb(175, 82, 222);
        case SystemColor::orange:
            return dark ? rgb(255, 159, 10) : rgb(255, 149, 0);
        case SystemColor::blue:
            return dark ? rgb(10, 132, 255) : rgb(0, 122, 255);
        case SystemColor::yellow:
            return dark ? rgb(255, 214, 10) : rgb(255, 204, 0);
        case SystemColor::secondaryLabel:
            return dark ? rgb(235, 235, 245, 0.6) : rgb(60, 60, 67, 0.6);
    }
    return Color::clear();
}

}  // namespace lunoval::ui
