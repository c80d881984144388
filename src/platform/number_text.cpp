#include "platform/number_text.hpp"

#include <array>
#include <charconv>
#include <cmath>

namespace lunoval {

std::string doubleDescription(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    const double magnitude = std::fabs(value);
    const bool plain = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
    std::array<char, 64> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text(buffer.data(), result.ptr);
    if (plain && text.find('.') == std::string::npos) text += ".0";
    return text;
}

}  // namespace lunoval
