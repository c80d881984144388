#include "platform/user_defaults.hpp"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include "temp_folder.hpp"

#include "platform/files.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

class UserDefaultsFile : public ::testing::Test {
  protected:
    [[nodiscard]] UserDefaults defaults() const { return UserDefaults(folder_ / "group.plist"); }

    lunoval::testing::TempFolder temp_{"lunoval-defaults"};
    const std::filesystem::path& folder_ = temp_.path();
};

TEST_F(UserDefaultsFile, KeepsEachTypeAndAnswersOnlyForIt) {
    const auto shared = defaults();
    EXPECT_FALSE(shared.doubleForKey("WidgetLastLocationLat"));
    shared.setDouble("WidgetLastLocationLat", 48.8566);
    shared.setInteger("selectedIndex", -1);
    shared.setString("name", "Zürich");
    shared.setData("widgetData", std::string("{\"a\":\0}", 8));

    const auto other = defaults();  // another process would see the same
    EXPECT_EQ(other.doubleForKey("WidgetLastLocationLat"), 48.8566);
    EXPECT_EQ(other.integerForKey("selectedIndex"), -1);
    EXPECT_EQ(other.doubleForKey("selectedIndex"), -1.0);
    EXPECT_EQ(other.stringForKey("name"), "Zürich");
    EXPECT_EQ(other.dataForKey("widgetData"), std::string("{\"a\":\0}", 8));
    EXPECT_FALSE(other.doubleForKey("name"));
    EXPECT_FALSE(other.stringForKey("widgetData"));
    EXPECT_FALSE(other.integerForKey("WidgetLastLocationLat"));

    shared.removeObject("name");
    EXPECT_FALSE(other.stringForKey("name"));
    EXPECT_EQ(other.doubleForKey("WidgetLastLocationLat"), 48.8566);
}

TEST_F(UserDefaultsFile, AStringHoldingANulCharacterReadsWithoutAborting) {
    // libplist's copying accessor aborts the process on such a string.
    std::ofstream(folder_ / "group.plist")
        << "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>name</key><string>a" << '\0'
        << "b</string></dict></plist>";
    // What follows the NUL is the library's to keep; the read must neither abort nor cut.
    const auto text = defaults().stringForKey("name");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 3U);
    EXPECT_EQ(defaults().objectForKey("name"), *text);
}

TEST_F(UserDefaultsFile, TwoProcessesWritingAtOnceLoseNothing) {
    constexpr int kWritesEach = 150;
    std::vector<pid_t> writers;
    for (const char* prefix : {"widget-", "host-"}) {
        const pid_t pid = ::fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            for (int i = 0; i < kWritesEach; ++i) {
                defaults().setInteger(prefix + std::to_string(i), i);
            }
            ::_exit(0);
        }
        writers.push_back(pid);
    }
    for (const pid_t pid : writers) {
        int status = 0;
        ::waitpid(pid, &status, 0);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    for (int i = 0; i < kWritesEach; ++i) {
        EXPECT_EQ(defaults().integerForKey("widget-" + std::to_string(i)), i);
        EXPECT_EQ(defaults().integerForKey("host-" + std::to_string(i)), i);
    }
}

TEST_F(UserDefaultsFile, ACorruptFileReadsAsEmptyAndIsKeptAsideOnTheNextWriteWithAWord) {
    fs::create_directories(folder_);
    const std::vector<std::string> damaged{"<plist><dict><key>WidgetLastLocationLat</key><real>4",
                                           "<plist><array>"};
    for (const auto& garbage : damaged) {  // twice within a second: neither copy is lost
        std::ofstream(folder_ / "group.plist") << garbage;
        EXPECT_FALSE(defaults().doubleForKey("WidgetLastLocationLat"));
        EXPECT_EQ(readWholeFile(folder_ / "group.plist"), garbage);

        ::testing::internal::CaptureStderr();
        defaults().setDouble("WidgetLastLocationLng", 2.35);
        const auto said = ::testing::internal::GetCapturedStderr();
        EXPECT_EQ(defaults().doubleForKey("WidgetLastLocationLng"), 2.35);
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_NE(said.find((folder_ / "group.plist").string() + " did not read"),
                  std::string::npos);
        const std::string keptAs = "kept it as ";
        const auto at = said.find(keptAs) + keptAs.size();
        EXPECT_EQ(readWholeFile(said.substr(at, said.find(" and ", at) - at)), garbage) << said;
    }
    std::vector<std::string> keptAside;
    for (const auto& entry : fs::directory_iterator(folder_)) {
        if (entry.path().filename().string().starts_with("group.plist.corrupt-")) {
            keptAside.push_back(readWholeFile(entry.path()).value_or(""));
        }
    }
    std::sort(keptAside.begin(), keptAside.end());
    EXPECT_EQ(keptAside, (std::vector<std::string>{damaged[1], damaged[0]}));
}

TEST(UserDefaultsSuite, LivesUnderTheConfigFolder) {
    ::setenv("XDG_CONFIG_HOME", "/tmp/lunoval-config", 1);
    EXPECT_EQ(UserDefaults::suite("group.com.orvane.lunoval").file(),
              fs::path("/tmp/lunoval-config/lunoval/group.com.orvane.lunoval.plist"));
    ::unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace lunoval
