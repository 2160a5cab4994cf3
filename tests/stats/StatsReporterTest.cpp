#include "stats/StatsReporter.h"
#include "platform/memory/MemoryHostStatistics.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace std::chrono_literals;

TEST(StatsReporterTest, eachQuestionIsAnsweredForTheSecondThatFollowsIt) {
    MemoryScheduler scheduler;
    MemoryHostStatistics host(scheduler);
    StatsReporter reporter(host, scheduler);
    std::vector<double> loads;
    const auto note = [&](const StatsSampler& stats) { loads.push_back(stats.cpu()); };
    host.ticks->user = 1000; // long ago
    reporter.measure(note);
    scheduler.advance(500ms);
    host.ticks->user += 1;
    reporter.measure(note);
    host.ticks->idle += 1;
    scheduler.advance(400ms);
    EXPECT_TRUE(loads.empty());
    scheduler.advance(1s);
    EXPECT_EQ(loads, (std::vector<double>{0.5, 0}));
    EXPECT_TRUE(scheduler.isIdle());
}

} // namespace quillet
