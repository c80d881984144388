#include <gtest/gtest.h>

#include <spawn.h>
#include <sys/wait.h>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>
#include "temp_folder.hpp"

#include "platform/files.hpp"
#include "run_command.hpp"

extern char** environ;

namespace lunoval {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// `lunoval host` in the background on a fresh machine, its log in a file of its own.
class HostCommand : public ::testing::Test {
  protected:
    ~HostCommand() override {
        if (pid_ > 0) stop(SIGKILL);
    }

    void start(const std::string& arguments) {
        const auto command = "exec env " + env_ + " " + LUNOVAL_BINARY + " host --out " +
                             out_.string() + " --location 48.85,2.35 --scale 1 " + arguments +
                             " >" + log_.string() + " 2>&1";
        const char* argv[] = {"sh", "-c", command.c_str(), nullptr};
        ::posix_spawn(&pid_, "/bin/sh", nullptr, nullptr, const_cast<char**>(argv), environ);
    }

    // The exit status, or -1 when the signal ended the host.
    int stop(int signal) {
        ::kill(pid_, signal);
        int status = 0;
        ::waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    [[nodiscard]] long count(const std::string& lines) const {
        return testing::countOf(readWholeFile(log_).value_or(""), lines);
    }

    bool waitFor(const std::string& lines, int times, std::chrono::milliseconds allowed = 5s) {
        const auto end = std::chrono::steady_clock::now() + allowed;
        while (count(lines) < times && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(20ms);
        }
        return count(lines) >= times;
    }

    testing::TempFolder temp_{"lunoval-host"};
    const fs::path out_ = temp_.path() / "out";
    const fs::path log_ = temp_.path() / "host.log";
    // `lunoval reload` finds the host through the runtime folder.
    const std::string env_ = testing::freshHome(temp_.path());
    pid_t pid_ = -1;
};

TEST_F(HostCommand, RefreshesOnReloadRequestsAndOnItsBudgetUntilStopped) {
    const std::string refreshed = "🔄 Host: refreshed 2 widgets\n📅 Host: next refresh in 15 minutes";
    start("--widgets MoonTimesWidget:accessoryInline,MoonPhaseWidget:systemSmall");
    ASSERT_TRUE(waitFor(refreshed, 1)) << readWholeFile(log_).value_or("");
    EXPECT_TRUE(fs::exists(out_ / "MoonTimesWidget-accessoryInline.png"));
    EXPECT_EQ(std::distance(fs::directory_iterator(out_), {}), 3);  // and index.html
    EXPECT_EQ(testing::runLunoval("reload", env_).status, 0);
    ASSERT_TRUE(waitFor(refreshed, 2, 2s));
    EXPECT_EQ(count("📅 Host: refreshing after a reload request\n"), 1);

    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_EQ(count("ℹ️ Host: stopped\n"), 1);
    EXPECT_FALSE(fs::exists(temp_.path() / "lunoval/reload.sock"));

    start("--min-interval 0.01");  // every widget
    ASSERT_TRUE(
        waitFor("🔄 Host: refreshed 12 widgets\n📅 Host: next refresh in 0.01 minutes\n", 3, 30s));
    EXPECT_EQ(stop(SIGINT), 0);
    EXPECT_EQ(std::distance(fs::directory_iterator(out_), {}), 13);
}

}  // namespace
}  // namespace lunoval
