#include "platform/installation.hpp"

#include <system_error>

namespace lunoval::installation {

namespace fs = std::filesystem;

namespace {

fs::path executableFolder() {
    std::error_code error;
    auto executable = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::current_path(error) : executable.parent_path();
}

}  // namespace

fs::path prefix() {
    fs::path folder = executableFolder();
    // The folder of the drawing and desktop programs below the prefix, matched from its last part
    // up.
    const fs::path drawingFolder = fs::path(LUNOVAL_LIBEXECDIR) / "lunoval";
    fs::path above = folder;
    for (auto part = drawingFolder.end(); part != drawingFolder.begin();) {
        --part;
        if (above.filename() != *part) return folder.parent_path();
        above = above.parent_path();
    }
    return above;
}

fs::path dataDirectory() {
    return prefix() / LUNOVAL_DATADIR / "lunoval";
}

fs::path localeDirectory() {
    return prefix() / LUNOVAL_LOCALEDIR;
}

fs::path drawingProgram() {
    return prefix() / LUNOVAL_LIBEXECDIR / "lunoval" / "lunoval-draw";
}

fs::path desktopProgram() {
    return prefix() / LUNOVAL_LIBEXECDIR / "lunoval" / "lunoval-desktop";
}

fs::path placesModule() {
    return prefix() / LUNOVAL_LIBEXECDIR / "lunoval" / "lunoval-places.so";
}

}  // namespace lunoval::installation
