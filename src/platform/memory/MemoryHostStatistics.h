#pragma once

#include "platform/HostStatistics.h"
#include "platform/memory/MemoryScheduler.h"

namespace quillet {

/// A machine with the figures that a test gives it: idle, half of its memory in use, offline,
/// without a battery to begin with. It has been up for as long as its scheduler, and may sleep.
class MemoryHostStatistics : public HostStatistics {
public:
    explicit MemoryHostStatistics(const MemoryScheduler& scheduler) : m_scheduler(scheduler) {}

    std::optional<CPUTicks> cpuTicks() override { return ticks; }
    std::optional<MemoryPages> memoryPages() override { return pages; }
    uint64_t physicalMemory() override { return physical; }
    std::optional<std::vector<NetworkInterface>> networkInterfaces() override { return interfaces; }
    std::optional<std::vector<PowerSource>> powerSources() override { return sources; }
    std::chrono::nanoseconds uptime() const override { return m_scheduler.elapsed() + m_slept; }

    /// Time passes and nothing runs.
    void sleep(std::chrono::nanoseconds span) { m_slept += span; }

    std::optional<CPUTicks> ticks = CPUTicks{};
    std::optional<MemoryPages> pages = MemoryPages{.internal = 1 << 20, .pageSize = 4096};
    uint64_t physical = uint64_t{8} << 30;
    std::optional<std::vector<NetworkInterface>> interfaces = std::vector<NetworkInterface>{};
    std::optional<std::vector<PowerSource>> sources = std::vector<PowerSource>{};

private:
    const MemoryScheduler& m_scheduler;
    std::chrono::nanoseconds m_slept{0};
};

} // namespace quillet
