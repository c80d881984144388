#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include "temp_folder.hpp"

#include "astro/test_dates.hpp"
#include "eclipse/eclipse_parser.hpp"

namespace lunoval {

using testing::utc;
using testing::zone;

template <typename F>
std::string loggedBy(F action) {
    ::testing::internal::CaptureStdout();
    action();
    return ::testing::internal::GetCapturedStdout();
}

// A fresh folder of bundles; each test writes the catalogues it needs.
class Catalogue : public ::testing::Test {
  protected:
    void write(const std::string& text, std::string_view bundle = kFrameworkBundleIdentifier) {
        const auto folder = root_ / bundle / "Data";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "events.txt", std::ios::binary) << text;
    }

    EclipseParser parser() const { return EclipseParser(BundleLocator{{root_}}); }

    lunoval::testing::TempFolder temp_{"lunoval-eclipse"};
    const std::filesystem::path& root_ = temp_.path();
};

}  // namespace lunoval
