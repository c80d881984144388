#pragma once

#include <filesystem>
#include <string>

namespace lunoval::phasegen {

// The years the shipped tables cover.
inline constexpr int firstTableYear = 1900;
inline constexpr int lastTableYear = 2100;

// The year's table as an XML property list: a dictionary from the month numbers "1" to "12",
// in that order, to the lines of the month's events.
std::string yearTableXml(int year);

// Writes <year>.plist for each year from first to last into folder, creating the folder if
// needed. Throws std::runtime_error naming the file when one cannot be written whole.
void writeYearTables(const std::filesystem::path& folder, int firstYear, int lastYear);

}  // namespace lunoval::phasegen
