#pragma once

#include <filesystem>

namespace lunoval {

// The user's folders as the desktop names them (XDG base and user directories).

std::filesystem::path homeDirectory();
// $XDG_DATA_HOME (~/.local/share) joined with this program's own folder, "lunoval".
std::filesystem::path applicationSupportDirectory();
// The desktop's documents folder, else ~/Documents.
std::filesystem::path documentsDirectory();

}  // namespace lunoval
