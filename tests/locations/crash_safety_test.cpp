#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <functional>
#include <random>
#include "temp_folder.hpp"

#include "locations/ov_storage.hpp"
#include "platform/user_defaults.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

constexpr int kRounds = 250;

// Runs `write(i)` for i = 0, 1, … in a child killed with SIGKILL after a random moment; answers
// the last i whose write had returned (-1 for none).
int killWhileWriting(const std::function<void(int)>& write, std::mt19937& random) {
    int report[2];
    EXPECT_EQ(::pipe(report), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(report[0]);
        for (int i = 0;; ++i) {
            write(i);
            if (::write(report[1], &i, sizeof i) != sizeof i) ::_exit(1);
        }
    }
    ::close(report[1]);
    ::usleep(std::uniform_int_distribution<useconds_t>(0, 20000)(random));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    int last = -1;
    for (int done = 0; ::read(report[0], &done, sizeof done) == sizeof done;) last = done;
    ::close(report[0]);
    return last;
}

std::size_t leftovers(const fs::path& folder) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        count += entry.path().filename().string().find(".tmp-") != std::string::npos ? 1 : 0;
    }
    return count;
}

TEST(CrashSafety, KilledDefaultsWritersLoseNoCompletedWrite) {
    const testing::TempFolder temp("lunoval-killed-defaults");
    std::mt19937 random(7);
    for (int round = 0; round < kRounds; ++round) {
        const UserDefaults defaults(temp.path() / "group.plist");
        fs::remove(defaults.file());
        const int last = killWhileWriting(
            [&](int i) { defaults.setInteger("k" + std::to_string(i), i); }, random);
        ASSERT_FALSE(defaults.isCorrupt()) << "round " << round;
        for (int i = 0; i <= last; ++i) {
            ASSERT_EQ(defaults.integerForKey("k" + std::to_string(i)), i) << "round " << round;
        }
    }
    EXPECT_LE(leftovers(temp.path()), 1U);  // the last writer's, until the next write
}

TEST(CrashSafety, KilledStoreWritersLoseNoCompletedSynchronize) {
    const testing::TempFolder temp("lunoval-killed-store");
    const auto local = temp.path() / "store";
    std::mt19937 random(11);
    for (int round = 0; round < kRounds; ++round) {
        fs::remove(local);
        OVStorage store(local, temp.path() / "legacy");
        const int last = killWhileWriting(
            [&](int i) {
                store.setObject(i, "k" + std::to_string(i));
                store.synchronize();
            },
            random);
        const auto file = readDictionaryFile(local);
        ASSERT_FALSE(file.corrupt) << "round " << round;
        for (int i = 0; i <= last; ++i) {
            ASSERT_TRUE(file.dictionary && file.dictionary->contains("k" + std::to_string(i)))
                << "round " << round << ", write " << i;
        }
    }
    EXPECT_LE(leftovers(temp.path()), 1U);
}

}  // namespace
}  // namespace lunoval
