#include "app/StatsListing.h"
#include "platform/memory/MemoryHostStatistics.h"
#include "stats/StatsSampler.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;

TEST(StatsListingTest, theSameFiguresForPeopleAndForPrograms) {
    MemoryScheduler scheduler;
    MemoryHostStatistics host(scheduler);
    host.interfaces->push_back({.isUp = true});
    StatsSampler stats(host, scheduler);
    stats.attach(u"test"_s);
    host.ticks = CPUTicks{.user = 1, .idle = 7};
    host.interfaces->front() = {.isUp = true, .received = 4 << 20, .sent = 1000};
    scheduler.advance(StatsSampler::interval);

    EXPECT_EQ(statsAsTable(stats), "CPU      13%\n"
                                   "Memory   4.0 of 8.0 GB\n"
                                   "Down     2.0 MB/s\n"
                                   "Up       500 B/s\n");
    EXPECT_EQ(statsAsLine(stats),
              "CPU 13%   Memory 4.0 of 8.0 GB    Down 2.0 MB/s    Up 500 B/s\n");
    EXPECT_EQ(statsAsJson(stats), "{\"battery\":null,\"charging\":false,\"cpu\":0.125,"
                                  "\"downBytesPerSec\":2097152,\"memoryTotal\":8589934592,"
                                  "\"memoryUsed\":4294967296,\"upBytesPerSec\":500}\n");

    host.sources = {{PowerSource::Type::internalBattery, 1, 2, true},
                    {PowerSource::Type::other, 1, 3, false}};
    scheduler.advance(StatsSampler::interval);
    EXPECT_TRUE(statsAsLine(stats).endsWith("Battery 50%, charging\n"));
    EXPECT_TRUE(statsAsJson(stats).startsWith("{\"battery\":50,\"charging\":true,"));
}

} // namespace quillet
