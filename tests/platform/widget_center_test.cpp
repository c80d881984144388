#include "platform/widget_center.hpp"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <cstdlib>
#include <cstring>
#include "temp_folder.hpp"

namespace lunoval::widgetkit {
namespace {

namespace fs = std::filesystem;

TEST(ReloadRequests, ReachTheOneLiveListenerWithoutEverMakingTheSenderWait) {
    const testing::TempFolder runtime("lunoval-reload");
    ::setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    const auto socket = runtime.path() / "lunoval/reload.sock";
    fs::create_directory(socket.parent_path());
    fs::permissions(socket.parent_path(), fs::perms::all);
    EXPECT_THROW(ReloadListener{}, std::runtime_error);  // others could write to the folder
    fs::permissions(socket.parent_path(), fs::perms::owner_all);
    // What a host that crashed leaves behind.
    const int crashed = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    std::strcpy(address.sun_path, socket.c_str());
    ASSERT_EQ(::bind(crashed, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ::close(crashed);
    {
        ReloadListener listener;
        EXPECT_THROW(ReloadListener{}, std::runtime_error);  // while one lives
        // Far more than the socket queues: a sender that waited would hang here.
        for (int i = 0; i < 2000; ++i) reloadAllTimelines();
        EXPECT_TRUE(listener.drain());
        EXPECT_FALSE(listener.drain());
    }
    EXPECT_FALSE(fs::exists(socket));
    ::unsetenv("XDG_RUNTIME_DIR");
}

}  // namespace
}  // namespace lunoval::widgetkit
