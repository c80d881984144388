#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <csignal>
#include <fstream>
#include <optional>
#include <random>
#include "temp_folder.hpp"

#include "locations/ov_storage.hpp"
#include "platform/files.hpp"
#include "platform/user_defaults.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

std::string key(int writer, int write) {
    return std::to_string(writer) + "-" + std::to_string(write);
}

// Writers killed at a random moment leave a file that reads and holds every write that had
// returned: one writer of the private store, or two of the shared defaults at once.
TEST(CrashSafety, KilledWritersLoseNoCompletedWrite) {
    constexpr int kPerWriter = 1000000;
    const testing::TempFolder temp("lunoval-killed");
    const UserDefaults defaults(temp.path() / "group.plist");
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const bool toStore = round % 2 == 1;
        const auto file = toStore ? temp.path() / "store" : defaults.file();
        fs::remove(file);
        OVStorage store(file, temp.path() / "legacy");
        std::array<int, 2> report{};
        ASSERT_EQ(::pipe(report.data()), 0);
        std::vector<pid_t> writers;
        for (int writer = 0; writer < (toStore ? 1 : 2); ++writer) {
            writers.push_back(::fork());
            if (writers.back() != 0) continue;
            ::close(report[0]);
            for (int i = 0;; ++i) {  // reports each write that returned
                if (toStore) {
                    store.setObject(i, key(writer, i));
                    store.synchronize();
                } else {
                    defaults.setInteger(key(writer, i), i);
                }
                const int done = writer * kPerWriter + i;
                if (::write(report[1], &done, sizeof done) != sizeof done) ::_exit(1);
            }
        }
        ::close(report[1]);
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 20000)(random));
        for (const pid_t writer : writers) {
            ::kill(writer, SIGKILL);
            ::waitpid(writer, nullptr, 0);
        }
        std::vector<int> last(writers.size(), -1);
        for (int done = 0; ::read(report[0], &done, sizeof done) == sizeof done;) {
            last[done / kPerWriter] = done % kPerWriter;
        }
        ::close(report[0]);
        const auto read = readDictionaryFile(file);
        ASSERT_FALSE(read.corrupt) << "round " << round;
        for (int writer = 0; writer < static_cast<int>(writers.size()); ++writer) {
            for (int i = 0; i <= last[writer]; ++i) {
                ASSERT_TRUE(read.dictionary && read.dictionary->contains(key(writer, i)))
                    << "round " << round << ", write " << key(writer, i);
            }
        }
    }
    std::size_t leftovers = 0;  // a killed writer's, until the next write replaces it
    for (const auto& entry : fs::directory_iterator(temp.path())) {
        leftovers += entry.path().filename().string().find(".tmp-") != std::string::npos ? 1 : 0;
    }
    EXPECT_LE(leftovers, 3U);
}

// The store takes over the legacy file once; a local file that does not read is kept aside,
// never overwritten; one that cannot be written says so and keeps its values in memory.
TEST(PrivateStore, TakesOverTheLegacyFileOnceAndKeepsADamagedOneAside) {
    const testing::TempFolder temp("lunoval-store");
    const auto local = temp.path() / "store.plist";
    const auto legacy = temp.path() / "legacy.plist";
    const PropertyValue values{
        {"text", "Zürich"},
        {"real", 0.1},
        {"integer", -42},
        {"flag", true},
        {"bytes", PropertyValue::binary({0, 255, 10})},
        {"nested", {{"list", {1, "two"}}, {"empty", PropertyValue::object()}}}};
    writeFileAtomically(legacy, propertyListXml(values));
    std::ofstream(local) << "not a property list";
    EXPECT_EQ(OVStorage(local, legacy).entries(), values);
    writeFileAtomically(legacy, propertyListXml({{"real", 3.0}}));
    EXPECT_EQ(OVStorage(local, legacy).entries(), values);  // the local copy shadows it now
    OVStorage unwritable(temp.path() / "no folder" / "store.plist", legacy);
    EXPECT_EQ(unwritable.synchronize().value_or("").find("cannot write"), 0U);
    EXPECT_EQ(unwritable.objectForKey("real"), 3.0);  // kept for this run
    std::vector<std::optional<std::string>> keptAside;
    for (const auto& entry : fs::directory_iterator(temp.path())) {
        if (entry.path().filename().string().find(".corrupt-") != std::string::npos) {
            keptAside.push_back(readWholeFile(entry.path()));
        }
    }
    EXPECT_EQ(keptAside, std::vector<std::optional<std::string>>{"not a property list"});
}

}  // namespace
}  // namespace lunoval
