#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace lunoval {

// The whole file, or absent when it cannot be read.
std::optional<std::string> readWholeFile(const std::filesystem::path& path);

// Writes a sibling temporary file and renames it over `path`, so readers see the old content
// or the new, never a part; temporary files left by writers that died are removed. Throws
// std::system_error naming the file on failure.
void writeFileAtomically(const std::filesystem::path& path, std::string_view content);

// An advisory lock on the sibling file "<name>.lock", held for the object's life; the file
// itself may be replaced meanwhile. Locks of one process do not nest.
class FileLock {
  public:
    enum class Mode { shared, exclusive };
    FileLock(const std::filesystem::path& file, Mode mode);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

  private:
    int descriptor_;
};

// Renames a file that could not be read as what it should be to "<name>.corrupt-<time>" (with
// a further "-<n>" when that name is taken; an earlier copy is never replaced), so that the next
// write does not destroy what the user may still want, and says so on standard error.
void keepCorruptFileAside(const std::filesystem::path& path);

}  // namespace lunoval
