#include "phases/phase_table_parser.hpp"

#include <charconv>
#include <vector>

#include "platform/property_list.hpp"

namespace lunoval {

namespace {

// Every separator counts: "a  b" has three parts, the middle one empty.
std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const auto at = text.find(separator);
        parts.push_back(text.substr(0, at));
        if (at == std::string_view::npos) return parts;
        text.remove_prefix(at + 1);
    }
}

}  // namespace

std::optional<std::int64_t> parseInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    if (text.empty()) return std::nullopt;
    std::int64_t value = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return value;
}

std::optional<MoonPhaseEvent> parsePhaseEvent(std::string_view text) {
    const auto fields = split(text, ' ');
    if (fields.size() != 3) return std::nullopt;
    const auto time = split(fields[1], ':');
    if (time.size() != 2) return std::nullopt;
    const auto day = parseInteger(fields[0]);
    const auto hour = parseInteger(time[0]);
    const auto minute = parseInteger(time[1]);
    const auto phase = MoonPhaseEvent::phaseType(fields[2]);
    if (!day || !hour || !minute || !phase) return std::nullopt;
    return MoonPhaseEvent{.day = *day, .hour = *hour, .minute = *minute, .phase = *phase};
}

std::optional<PhaseYear> parsePhaseYear(const std::string& bytes) {
    const auto dictionary = plist::parseStringArrayDictionary(bytes);
    if (!dictionary) return std::nullopt;
    PhaseYear year;
    for (const auto& [key, lines] : *dictionary) {
        const auto month = parseInteger(key);
        if (!month) continue;
        auto& monthEvents = year[*month];
        monthEvents.clear();
        for (const auto& line : lines) {
            if (auto event = parsePhaseEvent(line)) monthEvents.push_back(*event);
        }
    }
    return year;
}

}  // namespace lunoval
