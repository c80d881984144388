#include "platform/widget_center.hpp"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace lunoval::widgetkit {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kRequest = "reloadAllTimelines";

// Closes the socket when it goes.
struct DatagramSocket {
    int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ~DatagramSocket() {
        if (fd >= 0) ::close(fd);
    }
};

// Absent when the path is too long for a socket address.
std::optional<sockaddr_un> socketAddress(const fs::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto& text = path.native();
    if (text.size() >= sizeof(address.sun_path)) return std::nullopt;
    std::memcpy(address.sun_path, text.c_str(), text.size() + 1);
    return address;
}

const sockaddr* asSocketAddress(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

[[noreturn]] void fail(const std::string& what, const fs::path& path, int error) {
    throw std::system_error(error, std::generic_category(), what + " " + path.string());
}

// In /tmp anyone could have made the folder first; only one of ours that no one else can write
// to keeps other users from posing as the host.
void makePrivateFolder(const fs::path& folder) {
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) fail("cannot create", folder, errno);
    struct stat status {};
    if (::lstat(folder.c_str(), &status) != 0) fail("cannot read", folder, errno);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::getuid() || (status.st_mode & 022) != 0) {
        throw std::runtime_error(folder.string() + " is not a private folder of this user");
    }
}

bool someoneListens(const sockaddr_un& address) {
    const DatagramSocket probe;
    return ::connect(probe.fd, asSocketAddress(address), sizeof(address)) == 0;
}

}  // namespace

fs::path reloadSocketPath() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    // A relative runtime folder is invalid and ignored, as for every XDG folder.
    const fs::path folder = runtime != nullptr && runtime[0] == '/'
                                ? fs::path(runtime) / "lunoval"
                                : fs::path("/tmp") / ("lunoval-" + std::to_string(::getuid()));
    return folder / "reload.sock";
}

void reloadAllTimelines() {
    const auto address = socketAddress(reloadSocketPath());
    if (!address) return;
    const DatagramSocket sender;
    // Never waits: a full queue means the host has requests to read already.
    (void)::sendto(sender.fd, kRequest.data(), kRequest.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                   asSocketAddress(*address), sizeof(*address));
}

ReloadListener::ReloadListener(fs::path path) : path_(std::move(path)) {
    const auto address = socketAddress(path_);
    if (!address) throw std::runtime_error("the socket path " + path_.string() + " is too long");
    makePrivateFolder(path_.parent_path());
    if (someoneListens(*address)) {
        throw std::runtime_error("another host listens on " + path_.string());
    }
    ::unlink(path_.c_str());
    fd_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd_ < 0) fail("cannot make a socket for", path_, errno);
    if (::bind(fd_, asSocketAddress(*address), sizeof(*address)) != 0) {
        const int error = errno;
        ::close(fd_);
        fail("cannot listen on", path_, error);
    }
}

ReloadListener::~ReloadListener() {
    ::close(fd_);
    ::unlink(path_.c_str());
}

// Reading the socket consumes its requests, so this is not const whatever clang-tidy sees.
bool ReloadListener::drain() {  // NOLINT(readability-make-member-function-const)
    bool any = false;
    std::array<char, 64> request{};
    while (::recv(fd_, request.data(), request.size(), 0) >= 0) any = true;
    return any;
}

}  // namespace lunoval::widgetkit
