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

std::optional<double> decimalNumber(std::string_view text) {
    // from_chars takes no "+": one is dropped, as long as no other sign follows it.
    const bool plus = text.starts_with('+');
    if (plus) text.remove_prefix(1);
    if (plus && text.starts_with('-')) return std::nullopt;
    double value = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace lunoval
