#include "platform/linux/LinuxScheduler.h"
#include "contracts/SpinUntil.h"

#include <atomic>
#include <gtest/gtest.h>

namespace quillet {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

TEST(LinuxSchedulerTest, ticksMissedByABusyLoopAreNotMadeUpForAndTheGridStands) {
    LinuxScheduler scheduler;
    std::vector<Clock::duration> ticks;
    const auto start = Clock::now();
    const auto timer = scheduler.every(50ms, 0ms, [&] {
        ticks.push_back(Clock::now() - start);
        while (ticks.size() == 1 && Clock::now() - start < 180ms) {
        }
    });
    ASSERT_TRUE(spinUntil([&] { return ticks.size() >= 3; }));
    EXPECT_GE(ticks[1], 200ms);
    EXPECT_GE(ticks[2], 250ms);
}

TEST(LinuxSchedulerTest, destructionWaitsForWorkThatHasBegunAndDropsTheRest) {
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    {
        LinuxScheduler scheduler;
        for (int i = 0; i < 10; ++i) {
            scheduler.background(
                [&] {
                    ++begun;
                    const auto start = Clock::now();
                    while (Clock::now() - start < 30ms) {
                    }
                    ++ended;
                },
                [] { ADD_FAILURE() << "told after the end"; });
        }
        while (begun == 0) {
        }
    }
    EXPECT_EQ(begun, ended);
    EXPECT_LT(ended, 10);
    spinFor(1ms);
}

} // namespace quillet
