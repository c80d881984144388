#pragma once

#include <gtest/gtest.h>
#include <unistd.h>
#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

namespace lunoval::testing {

// An empty folder of the running test's own, removed with it.
class TempFolder {
  public:
    explicit TempFolder(const std::string& prefix)
        : path_(std::filesystem::temp_directory_path() /
                (prefix + "-" + std::to_string(::getpid()) + "-" + testName())) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    // Parameterised tests have a "/" in their names.
    static std::string testName() {
        std::string name = ::testing::UnitTest::GetInstance()->current_test_info()->name();
        std::replace(name.begin(), name.end(), '/', '_');
        return name;
    }

    std::filesystem::path path_;
};

}  // namespace lunoval::testing
