#pragma once

#include <filesystem>

namespace lunoval::installation {

// Where this program is installed, found from its own executable: the parent of `bin/` for
// `lunoval`, the prefix above `libexec/lunoval/` for the drawing program and one folder up for
// any other program (tests, benchmarks). A build tree is laid out the same way, so a copy
// installed under any prefix, or moved with it, finds what it needs.
std::filesystem::path prefix();

// The resource bundles, the translation catalogues, the drawing and desktop programs and the
// world locations module under the prefix.
std::filesystem::path dataDirectory();
std::filesystem::path localeDirectory();
std::filesystem::path drawingProgram();
std::filesystem::path desktopProgram();
std::filesystem::path placesModule();

}  // namespace lunoval::installation
