#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lunoval::tablefiles {

// A year table as its file holds it: the month keys in file order, each with its lines.
using YearTableFile = std::vector<std::pair<std::string, std::vector<std::string>>>;

std::string readWholeFile(const std::filesystem::path& file);

// Absent when the text is not a property list dictionary of string arrays.
std::optional<YearTableFile> parseYearTable(const std::string& xml);

}  // namespace lunoval::tablefiles
