#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace lunoval {

// The whole file, or absent when it cannot be read.
std::optional<std::string> readWholeFile(const std::filesystem::path& path);

// Writes a sibling temporary file and renames it over `path`, so readers see the old content
// or the new, never a part. Throws std::system_error naming the file on failure.
void writeFileAtomically(const std::filesystem::path& path, std::string_view content);

}  // namespace lunoval
