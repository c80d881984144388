#include "platform/files.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>

#include "platform/log.hpp"

namespace lunoval {

namespace fs = std::filesystem;

std::optional<std::string> readWholeFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::ostringstream bytes;
    bytes << file.rdbuf();
    if (file.bad()) return std::nullopt;
    return std::move(bytes).str();
}

namespace {

[[noreturn]] void fail(const fs::path& path, int error) {
    throw std::system_error(error, std::generic_category(), "cannot write " + path.string());
}

}  // namespace

namespace {

constexpr std::string_view kTemporaryInfix = ".tmp-";

// Temporary files of writers that were killed before their rename: their process is gone.
void removeAbandonedTemporaries(const fs::path& path) {
    const auto prefix = path.filename().string() + std::string(kTemporaryInfix);
    std::error_code error;
    const auto folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const auto name = entry.path().filename().string();
        if (!name.starts_with(prefix)) continue;
        const auto pid = std::strtol(name.c_str() + prefix.size(), nullptr, 10);
        if (pid > 0 && ::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH) {
            fs::remove(entry.path(), error);
        }
    }
}

// Unique per write: threads of one process may write the same file at once.
fs::path temporaryBeside(const fs::path& path) {
    static std::atomic<unsigned long> writes{0};
    return path.string() + std::string(kTemporaryInfix) + std::to_string(::getpid()) + "-" +
           std::to_string(writes++);
}

}  // namespace

void writeFileAtomically(const fs::path& path, std::string_view content) {
    removeAbandonedTemporaries(path);
    const fs::path temporary = temporaryBeside(path);
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (file == nullptr) fail(path, errno);
    const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size() &&
                         std::fflush(file) == 0 && ::fsync(::fileno(file)) == 0;
    const int error = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed || std::rename(temporary.c_str(), path.c_str()) != 0) {
        const int cause = written && closed ? errno : error;
        std::error_code ignored;
        fs::remove(temporary, ignored);
        fail(path, cause);
    }
}

FileLock::FileLock(const fs::path& file, Mode mode)
    : descriptor_(::open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {
    if (descriptor_ >= 0) ::flock(descriptor_, mode == Mode::shared ? LOCK_SH : LOCK_EX);
}

FileLock::~FileLock() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

void keepCorruptFileAside(const fs::path& path) {
    const auto stamp = std::chrono::duration_cast<std::chrono::seconds>(
                           std::chrono::system_clock::now().time_since_epoch())
                           .count();
    const auto stem = path.string() + ".corrupt-" + std::to_string(stamp);
    for (int copy = 1;; ++copy) {
        const auto aside = copy == 1 ? stem : stem + "-" + std::to_string(copy);
        if (::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) {
            log::warning(path.string() + " did not read as a property list; kept it as " + aside +
                         " and started a new one");
            return;
        }
        if (errno != EEXIST) return;
    }
}

}  // namespace lunoval
