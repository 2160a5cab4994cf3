#include "stats/StatsReporter.h"
#include "platform/memory/MemoryHostStatistics.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(StatsReporterTest, eachQuestionIsAnsweredForTheSecondThatFollowsIt) {
    MemoryScheduler scheduler;
    MemoryHostStatistics host(scheduler);
    StatsReporter reporter(host, scheduler);
    std::vector<double> loads;
    const auto note = [&](const StatsSampler& stats) {
        loads.push_back(stats.cpu());
        EXPECT_EQ(stats.memoryUsed(), uint64_t{4} << 30);
    };
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

TEST(StatsReporterTest, whoeverLooksAllTheTimeIsNotDisturbed) {
    MemoryScheduler scheduler;
    MemoryHostStatistics host(scheduler);
    StatsSampler sampler(host, scheduler);
    sampler.attach(u"popover"_s);
    int samples = 0;
    sampler.onTick = [&] { ++samples; };
    bool told = false;
    {
        StatsReporter reporter(host, scheduler);
        reporter.measure([&](const StatsSampler&) { told = true; });
        scheduler.advance(999ms);
    }
    scheduler.advance(1s);
    EXPECT_FALSE(told) << "dropped";
    EXPECT_EQ(samples, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(samples, 1);
}

} // namespace quillet
