#pragma once

#include <gtest/gtest.h>

#include <unistd.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include "temp_folder.hpp"

#include "eclipse/eclipse_parser.hpp"
#include "platform/calendar.hpp"

namespace lunoval {

inline Date utc(int year, int month, int day, int hour = 0, int minute = 0) {
    return *Calendar(TimeZone::utc()).date(year, month, day, hour, minute);
}

inline TimeZone zone(std::string_view identifier) {
    return *TimeZone::named(identifier);
}

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
