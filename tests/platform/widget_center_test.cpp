#include "platform/widget_center.hpp"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include "temp_folder.hpp"

namespace lunoval::widgetkit {
namespace {

namespace fs = std::filesystem;

// Each test has its own runtime folder, so its own socket.
class ReloadRequests : public ::testing::Test {
  protected:
    ReloadRequests() { ::setenv("XDG_RUNTIME_DIR", temp_.path().c_str(), 1); }
    ~ReloadRequests() override { ::unsetenv("XDG_RUNTIME_DIR"); }

    testing::TempFolder temp_{"lunoval-reload"};
    const fs::path socket_ = temp_.path() / "lunoval/reload.sock";
};

TEST_F(ReloadRequests, TakesOverAStaleSocketButNotALiveOne) {
    fs::create_directory(socket_.parent_path());
    fs::permissions(socket_.parent_path(), fs::perms::owner_all);
    // What a host that crashed leaves behind.
    const int crashed = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    std::strcpy(address.sun_path, socket_.c_str());
    ASSERT_EQ(::bind(crashed, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ::close(crashed);
    {
        ReloadListener listener;
        EXPECT_THROW(ReloadListener{}, std::runtime_error);
        EXPECT_FALSE(listener.drain());
        reloadAllTimelines();
        reloadAllTimelines();
        EXPECT_TRUE(listener.drain());
        EXPECT_FALSE(listener.drain());
    }
    EXPECT_FALSE(fs::exists(socket_));
}

TEST_F(ReloadRequests, TheSenderNeverWaitsForTheHost) {
    ReloadListener listener;
    // Far more than the socket queues: a sender that waited would hang here.
    for (int i = 0; i < 2000; ++i) reloadAllTimelines();
    EXPECT_TRUE(listener.drain());
}

TEST_F(ReloadRequests, RefusesAFolderOthersCanWrite) {
    fs::create_directory(socket_.parent_path());
    fs::permissions(socket_.parent_path(), fs::perms::all);
    EXPECT_THROW(ReloadListener{}, std::runtime_error);
}

}  // namespace
}  // namespace lunoval::widgetkit
