#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillet {

/// Time of all processors together since some moment, in ticks. Each counter wraps at 32 bits and
/// otherwise never falls. What is neither work nor idleness is sorted by one question: could the
/// processor have worked for us? Waiting for a disk is idle; time that the machine's host gave to
/// others is system, as is serving interrupts; time lent to guests is part of user or nice.
struct CPUTicks {
    uint32_t user = 0;
    uint32_t system = 0;
    uint32_t idle = 0;
    uint32_t nice = 0;
    bool operator==(const CPUTicks&) const = default;
};

/// Where the memory is that cannot be had for the asking. Free memory and caches of files are in
/// none of these.
struct MemoryPages {
    uint64_t internal = 0;  ///< belongs to programs or to the system
    uint64_t purgeable = 0; ///< part of `internal` that its owner gives back under pressure
    uint64_t wired = 0;     ///< cannot move, and is not counted as `internal`
    uint64_t compressor = 0;
    uint64_t pageSize = 0; ///< bytes
    bool operator==(const MemoryPages&) const = default;
};

/// A link over which the machine's own traffic passes, the loopback among them. Bytes are counted
/// from the moment when the link was first seen up, and from zero again after it was down.
struct NetworkInterface {
    bool isUp = false;
    bool isLoopback = false;
    uint64_t received = 0;
    uint64_t sent = 0;
    bool operator==(const NetworkInterface&) const = default;
};

/// What the machine can run on. All internal batteries count as one.
struct PowerSource {
    enum class Type { internalBattery, other };

    Type type = Type::other;
    std::optional<int64_t> currentCapacity; ///< in the unit of `maxCapacity`
    std::optional<int64_t> maxCapacity;
    bool isCharging = false;
    bool operator==(const PowerSource&) const = default;
};

/// The machine's own counters. Each answer is absent while the system does not give it or gives
/// something that cannot be read; that says nothing about the next time. To be asked on one
/// thread. An answer may take system calls, but never another process or the network.
class HostStatistics {
public:
    virtual ~HostStatistics() = default;

    virtual std::optional<CPUTicks> cpuTicks() = 0;
    virtual std::optional<MemoryPages> memoryPages() = 0;

    /// All memory in bytes; 0 where it is not known.
    virtual uint64_t physicalMemory() = 0;

    /// Every byte of traffic is in one interface only: bridges, bonds and tunnels, which repeat
    /// what passes the links below them, are left out.
    virtual std::optional<std::vector<NetworkInterface>> networkInterfaces() = 0;

    /// Batteries of mice, telephones and the like are not among them.
    virtual std::optional<std::vector<PowerSource>> powerSources() = 0;

    /// Since the machine started. Goes on while it sleeps, whatever is done to the wall clock.
    virtual std::chrono::nanoseconds uptime() const = 0;
};

} // namespace quillet
