#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lunoval {

// One entry of the host app's older list file: "LAT$$LNG$$NAME$$ZONE$$GMT-OFFSET".
struct LegacyLocationLine {
    double latitude = 0;
    double longitude = 0;
    std::string name;
    std::string timezoneId;
    std::int64_t gmtOffset = 0;
};

// Numbers read as the old app read them: a leading number, else 0. Absent when the text has
// fewer than five fields.
std::optional<LegacyLocationLine> parseLegacyLocationLine(std::string_view text);

// The file's entries; absent when it is missing or not a property-list array of strings.
std::optional<std::vector<std::string>> readLegacyLocationFile(const std::filesystem::path& file);

}  // namespace lunoval
