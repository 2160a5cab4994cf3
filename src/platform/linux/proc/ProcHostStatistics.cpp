#include "platform/linux/proc/ProcHostStatistics.h"

#include <algorithm>
#include <ctime>

namespace quillet {

namespace {

constexpr uint64_t pageSize = 1024; // the unit of the kernel's own figures

std::optional<uint64_t> kibibytes(std::string_view meminfo, std::string_view name) {
    auto line = lineOf(meminfo, name);
    return line ? toNumber<uint64_t>(takeWord(*line)) : std::nullopt;
}

/// The columns are name, type and value.
std::optional<uint64_t> kstat(std::string_view stats, std::string_view name) {
    auto line = lineOf(stats, name);
    if (!line)
        return std::nullopt;
    takeWord(*line);
    return toNumber<uint64_t>(takeWord(*line));
}

} // namespace

ProcHostStatistics::ProcHostStatistics(const std::filesystem::path& proc,
                                       const std::filesystem::path& sys)
    : m_stat(proc / "stat"),
      m_meminfo(proc / "meminfo"),
      m_arcstats(proc / "spl/kstat/zfs/arcstats"),
      m_links(proc, sys),
      m_supplies(sys) {}

std::optional<CPUTicks> ProcHostStatistics::cpuTicks() {
    std::array<char, 512> buffer; // the first line is the sum over all processors
    auto line = lineOf(m_stat.read(buffer).value_or(std::string_view()), "cpu");
    if (!line)
        return std::nullopt;
    enum Column { user, nice, system, idle, iowait, irq, softirq, steal };
    std::array<uint64_t, 8> columns{};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto ticks = toNumber<uint64_t>(takeWord(*line));
        if (!ticks && i <= idle)
            return std::nullopt;
        columns[i] = ticks.value_or(0);
    }
    const Counters read{
        columns[user],
        columns[system] + columns[irq] + columns[softirq] + columns[steal],
        columns[idle] + columns[iowait],
        columns[nice],
    };
    // Some columns fall at times, and wrap like nothing else does. A fall counts as a standstill.
    for (std::size_t i = 0; i < read.size(); ++i) {
        const uint64_t before = m_lastRead ? (*m_lastRead)[i] : 0;
        m_ticks[i] += read[i] - std::min(before, read[i]);
    }
    m_lastRead = read;
    const auto wrapped = [&](std::size_t i) { return static_cast<uint32_t>(m_ticks[i]); };
    return CPUTicks{wrapped(0), wrapped(1), wrapped(2), wrapped(3)};
}

std::optional<MemoryPages> ProcHostStatistics::memoryPages() {
    std::array<char, 4096> buffer;
    const std::string_view meminfo = m_meminfo.read(buffer).value_or(std::string_view());
    const auto total = kibibytes(meminfo, "MemTotal:");
    const auto available = kibibytes(meminfo, "MemAvailable:");
    if (!total || !available)
        return std::nullopt;
    return MemoryPages{.internal = *total - std::min(*total, *available),
                       .purgeable = purgeableCache(),
                       .pageSize = pageSize};
}

uint64_t ProcHostStatistics::physicalMemory() {
    std::array<char, 4096> buffer;
    const std::string_view meminfo = m_meminfo.read(buffer).value_or(std::string_view());
    return kibibytes(meminfo, "MemTotal:").value_or(0) * pageSize;
}

uint64_t ProcHostStatistics::purgeableCache() {
    std::array<char, 16384> buffer;
    const std::string_view stats = m_arcstats.read(buffer).value_or(std::string_view());
    const auto size = kstat(stats, "size");
    const auto least = kstat(stats, "c_min");
    return size && least && *size > *least ? (*size - *least) / pageSize : 0;
}

std::optional<std::vector<NetworkInterface>> ProcHostStatistics::networkInterfaces() {
    return m_links.read();
}

std::optional<std::vector<PowerSource>> ProcHostStatistics::powerSources() {
    return m_supplies.read();
}

std::chrono::nanoseconds ProcHostStatistics::uptime() const {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace quillet
