#pragma once

#include "platform/HostStatistics.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every HostStatistics promises. A Backend has `statistics()` of a machine that tells its
/// load and memory, and `work()`, which keeps the machine busy for some ticks.
template<typename Backend>
class HostStatisticsContract : public testing::Test {
protected:
    Backend backend;
};

TYPED_TEST_SUITE_P(HostStatisticsContract);

TYPED_TEST_P(HostStatisticsContract, workTakesTimeAndMemoryInUseIsPartOfAllMemory) {
    HostStatistics& host = this->backend.statistics();
    const auto before = host.cpuTicks();
    const auto start = host.uptime();
    this->backend.work();
    const auto after = host.cpuTicks();
    ASSERT_TRUE(before && after);
    EXPECT_GT(host.uptime(), start);
    EXPECT_GT(after->user + after->system + after->nice,
              before->user + before->system + before->nice);

    const auto pages = host.memoryPages();
    ASSERT_TRUE(pages);
    const uint64_t used = (pages->internal + pages->wired + pages->compressor) * pages->pageSize;
    EXPECT_GT(used, 0u);
    EXPECT_LT(used, host.physicalMemory());
}

REGISTER_TYPED_TEST_SUITE_P(HostStatisticsContract, workTakesTimeAndMemoryInUseIsPartOfAllMemory);

} // namespace quillet
