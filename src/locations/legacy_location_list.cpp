#include "locations/legacy_location_list.hpp"

#include <cstdlib>

#include "platform/files.hpp"
#include "platform/property_value.hpp"

namespace lunoval {

namespace {

constexpr std::string_view kSeparator = "$$";
constexpr std::size_t kFields = 5;

std::vector<std::string> fields(std::string_view text) {
    std::vector<std::string> parts;
    for (;;) {
        const auto at = text.find(kSeparator);
        parts.emplace_back(text.substr(0, at));
        if (at == std::string_view::npos) return parts;
        text.remove_prefix(at + kSeparator.size());
    }
}

// "nan" and "1e999" stay what they say, so that the list can tell them from a place at 0.
double leadingDouble(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}

std::int64_t leadingInteger(const std::string& text) {
    return std::strtoll(text.c_str(), nullptr, 10);
}

}  // namespace

std::optional<LegacyLocationLine> parseLegacyLocationLine(std::string_view text) {
    const auto parts = fields(text);
    if (parts.size() < kFields) return std::nullopt;
    return LegacyLocationLine{.latitude = leadingDouble(parts[0]),
                              .longitude = leadingDouble(parts[1]),
                              .name = parts[2],
                              .timezoneId = parts[3],
                              .gmtOffset = leadingInteger(parts[4])};
}

std::optional<std::vector<std::string>> readLegacyLocationFile(const std::filesystem::path& file) {
    const auto bytes = readWholeFile(file);
    if (!bytes) return std::nullopt;
    const auto root = parsePropertyList(*bytes);
    if (!root || !root->is_array()) return std::nullopt;
    std::vector<std::string> lines;
    for (const auto& item : *root) {
        if (!item.is_string()) return std::nullopt;
        lines.push_back(item.get<std::string>());
    }
    return lines;
}

}  // namespace lunoval
