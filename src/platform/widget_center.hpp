#pragma once

#include <filesystem>

namespace lunoval::widgetkit {

// Where a running widget host listens for reload requests: $XDG_RUNTIME_DIR/lunoval/reload.sock,
// or /tmp/lunoval-<uid>/reload.sock without a runtime folder.
std::filesystem::path reloadSocketPath();

// Asks a running host to reload every widget's timeline. Fire and forget: without a host, or
// with one that has requests waiting already, nothing happens.
void reloadAllTimelines();

// The host's end of the reload requests. The socket exists as long as the listener does.
class ReloadListener {
  public:
    // Takes over a socket left behind by a host that did not end cleanly; throws
    // std::runtime_error when another host listens there or the socket cannot be made.
    explicit ReloadListener(std::filesystem::path path = reloadSocketPath());
    ~ReloadListener();
    ReloadListener(const ReloadListener&) = delete;
    ReloadListener& operator=(const ReloadListener&) = delete;

    // Readable when a request is waiting.
    [[nodiscard]] int fd() const { return fd_; }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    // Takes every waiting request; whether there was any.
    bool drain();

  private:
    std::filesystem::path path_;
    int fd_ = -1;
};

}  // namespace lunoval::widgetkit
