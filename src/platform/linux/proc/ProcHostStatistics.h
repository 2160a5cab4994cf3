#pragma once

#include "platform/linux/proc/NetworkLinks.h"
#include "platform/linux/proc/PowerSupplies.h"

#include <array>

namespace quillet {

/// The kernel's counters, read from its files. Starts no process and waits for nobody; costs some
/// dozens of system calls for all answers together, and nothing while not asked.
class ProcHostStatistics : public HostStatistics {
public:
    /// Folders in the place of the kernel's own are for tests.
    explicit ProcHostStatistics(const std::filesystem::path& proc = "/proc",
                                const std::filesystem::path& sys = "/sys");

    std::optional<CPUTicks> cpuTicks() override;

    /// In use is what is not available, so caches of files count as free. The cache of ZFS, which
    /// the kernel holds for memory in use, is purgeable down to its least size.
    std::optional<MemoryPages> memoryPages() override;
    uint64_t physicalMemory() override;
    std::optional<std::vector<NetworkInterface>> networkInterfaces() override;
    std::optional<std::vector<PowerSource>> powerSources() override;
    std::chrono::nanoseconds uptime() const override;

private:
    using Counters = std::array<uint64_t, 4>; // as in CPUTicks

    uint64_t purgeableCache();

    KernelFile m_stat;
    KernelFile m_meminfo;
    KernelFile m_arcstats;
    NetworkLinks m_links;
    PowerSupplies m_supplies;
    std::optional<Counters> m_lastRead;
    Counters m_ticks{};
};

} // namespace quillet
