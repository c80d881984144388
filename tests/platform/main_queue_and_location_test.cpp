#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/main_queue.hpp"

namespace lunoval {
namespace {

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);

TEST(ManualQueue, RunsBlocksInOrderAndDelayedOnesWhenItsClockReachesThem) {
    ManualQueue queue(kStart);
    std::vector<std::string> ran;
    queue.asyncAfter(8.0, [&] {
        ran.push_back(std::to_string(queue.now().timeIntervalSince1970() - 1760000000));
    });
    queue.async([&] {
        ran.emplace_back("first");
        queue.async([&] { ran.emplace_back("added while running"); });
    });
    queue.async([&] { ran.emplace_back("second"); });
    queue.runDue();
    EXPECT_EQ(ran, (std::vector<std::string>{"first", "second", "added while running"}));
    queue.advance(7.999);
    EXPECT_EQ(ran.size(), 3U);
    queue.advance(2);
    EXPECT_EQ(ran.back(), "8.000000");  // run at its instant, not at the end of the advance
    EXPECT_NEAR(queue.clock()().timeIntervalSince1970() - 1760000000, 9.999, 1e-6);
}

}  // namespace
}  // namespace lunoval
