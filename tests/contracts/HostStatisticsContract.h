#pragma once

#include "platform/HostStatistics.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every HostStatistics promises. A Backend has `statistics()` of a machine that tells its
/// load and memory, and `work()`, which keeps the machine busy for some ticks.
template<typename Backend>
class HostStatisticsContract : public testing::Test {
protected:
    HostStatistics& statistics() { return backend.statistics(); }

    Backend backend;
};

TYPED_TEST_SUITE_P(HostStatisticsContract);

TYPED_TEST_P(HostStatisticsContract, timeAndTicksMoveOnWithWork) {
    const auto before = this->statistics().cpuTicks();
    const auto start = this->statistics().uptime();
    this->backend.work();
    const auto after = this->statistics().cpuTicks();
    ASSERT_TRUE(before && after);
    EXPECT_GT(this->statistics().uptime(), start);
    EXPECT_GT(after->user + after->system + after->nice,
              before->user + before->system + before->nice);
}

TYPED_TEST_P(HostStatisticsContract, memoryInUseIsPartOfAllMemory) {
    const auto pages = this->statistics().memoryPages();
    ASSERT_TRUE(pages);
    const uint64_t used = (pages->internal + pages->wired + pages->compressor) * pages->pageSize;
    EXPECT_GT(used, 0u);
    EXPECT_LT(used, this->statistics().physicalMemory());
}

TYPED_TEST_P(HostStatisticsContract, linksCountFromWhenTheyWereFirstSeen) {
    const auto interfaces = this->statistics().networkInterfaces();
    if (!interfaces)
        return;
    for (const NetworkInterface& interface : *interfaces)
        EXPECT_EQ(interface, (NetworkInterface{interface.isUp, interface.isLoopback, 0, 0}));
}

REGISTER_TYPED_TEST_SUITE_P(HostStatisticsContract, timeAndTicksMoveOnWithWork,
                            memoryInUseIsPartOfAllMemory, linksCountFromWhenTheyWereFirstSeen);

} // namespace quillet
