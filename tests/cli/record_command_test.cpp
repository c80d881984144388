#include <gtest/gtest.h>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "run_command.hpp"

namespace {

using lunoval::testing::runLunoval;

TEST(RecordCommand, RejectsBadInputWithOneLineAndStatusTwo) {
    for (const char* arguments : {
             "record --lat 91 --lng 0",
             "record --lat -90.5 --lng 0",
             "record --lat 10 --lng 180.01",
             "record --lat nan --lng 0",
             "record --lat 10 --lng inf",
             "record --lat ten --lng 0",
             "record --lng 0",
             "record --lat 1 --lng 2 --timezone Mars/Olympus",
             "record --lat 1 --lng 2 --at yesterday",
             "record --lat 1 --lng 2 --at 2025-13-01T00:00:00Z",
             "record --lat 1 --lng 2 --at 2025-10-01T00:00:00",
             "record --lat 1 --lng 2 --at @1e400",
             "record --lat 1 --lng 2 --frobnicate",
             "",
         }) {
        const auto run = runLunoval(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_TRUE(run.out.empty()) << arguments;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << arguments << run.err;
        EXPECT_TRUE(run.err.starts_with("lunoval: ")) << arguments << run.err;
    }
}

TEST(RecordCommand, ReadsUnixSecondsAndIsoTimesAlike) {
    const auto unix =
        runLunoval("record --lat 10 --lng 20 --timezone UTC --at @1759808880.5 --json");
    const auto iso =
        runLunoval("record --lat 10 --lng 20 --timezone UTC --at 2025-10-07T03:48:00.5Z --json");
    ASSERT_EQ(unix.status, 0) << unix.err;
    EXPECT_EQ(nlohmann::json::parse(unix.out), nlohmann::json::parse(iso.out));
}

TEST(RecordCommand, PrintsAReadableSummaryInTheDeviceZone) {
    const auto run = runLunoval(
        "record --lat 51.4769 --lng -0.0005 --timezone Europe/London --locale en_GB "
        "--at 2025-06-21T12:00:00Z");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("Sun         rise 04:4"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Europe/London"), std::string::npos) << run.out;
}

}  // namespace
