#pragma once

#include "platform/Scheduler.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace quillet {

using std::chrono::milliseconds;

/// What every Scheduler promises. A Backend has `std::unique_ptr<Scheduler> scheduler` and
/// `letPass(span)`, which lets at least that much of the scheduler's time go by.
template<typename Backend>
class SchedulerContract : public testing::Test {
protected:
    milliseconds elapsed() const { return milliseconds(start.msecsTo(scheduler().now())); }
    Scheduler& scheduler() const { return *backend.scheduler; }

    template<typename Condition>
    void passUntil(Condition condition) {
        for (int i = 0; i < 500 && !condition(); ++i)
            backend.letPass(milliseconds(20));
    }

    Backend backend;
    QDateTime start = scheduler().now();
};

TYPED_TEST_SUITE_P(SchedulerContract);

TYPED_TEST_P(SchedulerContract, tasksRunOnceInTheOrderOfTheirTimesAndNeverInsideTheCall) {
    std::string order;
    const auto third = this->scheduler().after(milliseconds(60), [&] { order += '3'; });
    const auto first = this->scheduler().after(milliseconds(0), [&] { order += '1'; });
    auto cancelled = this->scheduler().after(milliseconds(10), [&] { order += 'x'; });
    const auto second = this->scheduler().after(milliseconds(30), [&] { order += '2'; });
    cancelled.reset();
    EXPECT_EQ(order, "");
    this->passUntil([&] { return order.size() >= 3; });
    EXPECT_EQ(order, "123");
}

TYPED_TEST_P(SchedulerContract, aTaskMayDestroyItsOwnTimer) {
    int runs = 0;
    std::unique_ptr<Timer> once;
    std::unique_ptr<Timer> ticks;
    const auto endWith = [&runs](std::unique_ptr<Timer>& timer) {
        return [&] {
            timer.reset();
            ++runs;
        };
    };
    once = this->scheduler().after(milliseconds(5), endWith(once));
    ticks = this->scheduler().every(milliseconds(5), milliseconds(0), endWith(ticks));
    this->passUntil([&] { return runs >= 2; });
    this->backend.letPass(milliseconds(20));
    EXPECT_EQ(runs, 2);
}

TYPED_TEST_P(SchedulerContract, ticksComeOncePerIntervalAndNeverBeforeTheirTime) {
    constexpr milliseconds interval(40);
    std::vector<qint64> intervals; // in which interval of the grid each tick came
    const auto ticks = this->scheduler().every(
        interval, milliseconds(20), [&] { intervals.push_back(this->elapsed() / interval); });
    ticks->wake(); // no effect on a timer that is awake
    this->passUntil([&] { return intervals.size() >= 6; });
    ASSERT_GE(intervals.size(), 6u);
    EXPECT_GE(intervals.front(), 1);
    for (std::size_t i = 1; i < intervals.size(); ++i)
        EXPECT_GT(intervals[i], intervals[i - 1]);
}

TYPED_TEST_P(SchedulerContract, aSleepingTimerRunsNothingAndWakesToTheNextTickOfItsGrid) {
    constexpr milliseconds interval(100);
    std::vector<milliseconds> times;
    const auto ticks = this->scheduler().every(interval, milliseconds(0),
                                               [&] { times.push_back(this->elapsed()); });
    ticks->sleep();
    ticks->sleep();
    this->backend.letPass(milliseconds(330));
    EXPECT_TRUE(times.empty());

    const milliseconds next = (this->elapsed() / interval + 1) * interval;
    ticks->wake();
    this->passUntil([&] { return !times.empty(); });
    ASSERT_FALSE(times.empty());
    EXPECT_GE(times.front(), next - milliseconds(1)); // now() rounds
}

TYPED_TEST_P(SchedulerContract, backgroundWorkIsDoneBeforeItsEndIsToldOnTheMainThread) {
    std::atomic<bool> worked = false;
    bool told = false;
    this->scheduler().background([&] { worked = true; },
                                 [&, main = std::this_thread::get_id()] {
                                     EXPECT_TRUE(worked);
                                     EXPECT_EQ(std::this_thread::get_id(), main);
                                     told = true;
                                 });
    EXPECT_FALSE(told);
    this->passUntil([&] { return told; });
    EXPECT_TRUE(told);

    this->scheduler().background([] {}, [] { ADD_FAILURE() << "told after the end"; });
    this->backend.scheduler.reset();
    this->backend.letPass(milliseconds(50));
}

REGISTER_TYPED_TEST_SUITE_P(SchedulerContract,
                            tasksRunOnceInTheOrderOfTheirTimesAndNeverInsideTheCall,
                            aTaskMayDestroyItsOwnTimer,
                            ticksComeOncePerIntervalAndNeverBeforeTheirTime,
                            aSleepingTimerRunsNothingAndWakesToTheNextTickOfItsGrid,
                            backgroundWorkIsDoneBeforeItsEndIsToldOnTheMainThread);

} // namespace quillet
