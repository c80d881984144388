#include <gtest/gtest.h>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
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

// `lunoval host` in the background on a fresh machine: its own home, runtime folder and log.
class HostCommand : public ::testing::Test {
  protected:
    HostCommand() { fs::create_directory(runtime_); }
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

    [[nodiscard]] std::string log() const { return readWholeFile(log_).value_or(""); }

    [[nodiscard]] int count(const std::string& lines) const {
        const auto text = log();
        int found = 0;
        for (auto at = text.find(lines); at != std::string::npos; at = text.find(lines, at + 1)) {
            ++found;
        }
        return found;
    }

    bool waitFor(const std::string& lines, int times, std::chrono::milliseconds allowed = 5s) {
        const auto end = std::chrono::steady_clock::now() + allowed;
        while (count(lines) < times && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(20ms);
        }
        return count(lines) >= times;
    }

    testing::TempFolder temp_{"lunoval-host"};
    const fs::path& root_ = temp_.path();
    const fs::path runtime_ = root_ / "run";
    const fs::path out_ = root_ / "out";
    const fs::path log_ = root_ / "host.log";
    // `lunoval reload` finds the host through the runtime folder.
    const std::string env_ =
        "HOME=" + root_.string() + " XDG_CONFIG_HOME= XDG_RUNTIME_DIR=" + runtime_.string();
    pid_t pid_ = -1;
};

TEST_F(HostCommand, RefreshesOnReloadRequestsAndStopsOnSigterm) {
    const std::string refreshed = "🔄 Host: refreshed 2 widgets\n📅 Host: next refresh in 15 minutes";
    start("--widgets MoonTimesWidget:accessoryInline,MoonPhaseWidget:systemSmall");
    ASSERT_TRUE(waitFor(refreshed, 1)) << log();
    EXPECT_TRUE(fs::exists(out_ / "MoonTimesWidget-accessoryInline.png"));
    EXPECT_EQ(std::distance(fs::directory_iterator(out_), {}), 3);  // and index.html

    EXPECT_EQ(testing::runLunoval("reload", env_).status, 0);
    ASSERT_TRUE(waitFor(refreshed, 2, 2s));
    EXPECT_EQ(count("📅 Host: refreshing after a reload request\n"), 1);

    // Ten requests in a burst make no more than a refresh a second (a slow, instrumented build
    // stretches the burst, so the bound follows the time it took).
    const auto burstStart = std::chrono::steady_clock::now();
    for (int i = 0; i < 10; ++i) {
        testing::runLunoval("reload", env_);
        std::this_thread::sleep_for(80ms);
    }
    std::this_thread::sleep_for(1500ms);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(
                             std::chrono::steady_clock::now() - burstStart)
                             .count();
    EXPECT_GE(count(refreshed), 3);
    EXPECT_LE(count(refreshed), 3 + seconds) << seconds << " s";

    EXPECT_EQ(stop(SIGTERM), 0);
    EXPECT_NE(log().find("ℹ️ Host: stopped\n"), std::string::npos) << log();
    EXPECT_FALSE(fs::exists(runtime_ / "lunoval/reload.sock"));
}

TEST_F(HostCommand, RefreshesEveryWidgetOnItsBudgetUntilSigint) {
    start("--min-interval 0.01");
    ASSERT_TRUE(
        waitFor("🔄 Host: refreshed 12 widgets\n📅 Host: next refresh in 0.01 minutes\n", 3, 30s))
        << log();
    EXPECT_EQ(stop(SIGINT), 0);
    EXPECT_EQ(std::distance(fs::directory_iterator(out_), {}), 13);
}

TEST_F(HostCommand, NothingHappensOnBadInputOrWithoutAHost) {
    const auto reload = testing::runLunoval("reload", env_);
    EXPECT_EQ(reload.status, 0);
    EXPECT_EQ(reload.out + reload.err, "");
    for (const auto& [arguments, named] : std::vector<std::pair<std::string, std::string>>{
             {"--widgets MoonPhaseWidget", "KIND:FAMILY"},
             {"--widgets ClockWidget:systemSmall", "ClockWidget"},
             {"--widgets MoonPhaseWidget:systemSmall,MoonPhaseWidget:systemHuge", "systemHuge"},
             {"--widgets MoonPhaseWidget:systemMedium", "systemMedium"},
             {"--min-interval 0", "--min-interval"},
             {"--min-interval nan", "--min-interval"}}) {
        const auto run = testing::runLunoval("host --out " + out_.string() + " " + arguments, env_);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_TRUE(run.err.starts_with("lunoval: ")) << run.err;
        EXPECT_NE(run.err.find(named), std::string::npos) << run.err;
    }
    EXPECT_FALSE(fs::exists(out_));
    EXPECT_TRUE(fs::is_empty(runtime_));

    writeFileAtomically(out_, "not a folder");
    const auto run = testing::runLunoval("host --out " + (out_ / "images").string(), env_);
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("cannot create the folder"), std::string::npos) << run.err;
}

}  // namespace
}  // namespace lunoval
