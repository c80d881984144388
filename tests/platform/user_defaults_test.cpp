#include "platform/user_defaults.hpp"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <fstream>
#include "temp_folder.hpp"

#include "platform/files.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

class UserDefaultsFile : public ::testing::Test {
  protected:
    lunoval::testing::TempFolder temp_{"lunoval-defaults"};
    const fs::path file_ = temp_.path() / "group.plist";
    UserDefaults defaults_{file_};
};

// Each getter answers only for its own type, an integer reading as a double too, negative
// ones included; a removal takes only its key.
TEST_F(UserDefaultsFile, EachGetterAnswersOnlyForItsTypeAndARemovalOnlyForItsKey) {
    defaults_.setObjects({{"real", 0.5}, {"integer", -1}});
    defaults_.setString("text", "Zürich");
    defaults_.removeObject("real");
    EXPECT_EQ(defaults_.doubleForKey("integer"), -1.0);
    EXPECT_EQ(defaults_.integerForKey("integer"), -1);
    EXPECT_FALSE(defaults_.doubleForKey("text") || defaults_.integerForKey("text") ||
                 defaults_.doubleForKey("real"));
    EXPECT_EQ(defaults_.stringForKey("text"), "Zürich");
}

TEST_F(UserDefaultsFile, AStringHoldingANulCharacterReadsWithoutAborting) {
    // libplist's copying accessor aborts the process on such a string.
    std::ofstream(file_) << R"(<?xml version="1.0"?><plist version="1.0"><dict><key>name</key>)"
                         << "<string>a" << '\0' << "b</string></dict></plist>";
    // What follows the NUL is the library's to keep; the read must neither abort nor cut.
    EXPECT_EQ(defaults_.stringForKey("name").value_or("").size(), 3U);
}

// Twice within a second, so neither kept copy may replace the other.
TEST_F(UserDefaultsFile, ACorruptFileReadsAsEmptyAndIsKeptAsideOnTheNextWriteWithAWord) {
    const std::vector<std::string> damaged{"<plist><dict><key>WidgetLastLocationLat</key><real>4",
                                           "<plist><array>"};
    for (const auto& garbage : damaged) {
        std::ofstream(file_) << garbage;
        EXPECT_FALSE(defaults_.doubleForKey("WidgetLastLocationLat"));
        EXPECT_EQ(readWholeFile(file_), garbage);  // reading never writes
        ::testing::internal::CaptureStderr();
        defaults_.setDouble("WidgetLastLocationLng", 2.35);
        const auto said = ::testing::internal::GetCapturedStderr();
        EXPECT_EQ(defaults_.doubleForKey("WidgetLastLocationLng"), 2.35);
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_NE(said.find(file_.string() + " did not read"), std::string::npos) << said;
    }
    std::vector<std::string> keptAside;
    for (const auto& entry : fs::directory_iterator(temp_.path())) {
        if (entry.path().filename().string().starts_with("group.plist.corrupt-")) {
            keptAside.push_back(readWholeFile(entry.path()).value_or(""));
        }
    }
    std::sort(keptAside.begin(), keptAside.end());
    EXPECT_EQ(keptAside, (std::vector<std::string>{damaged[1], damaged[0]}));
}

}  // namespace
}  // namespace lunoval
