#include "stats/StatsSampler.h"

#include <algorithm>

namespace quillet {

namespace {

/// The small difference also where the counter has wrapped in between.
double ticksBetween(uint32_t earlier, uint32_t later) {
    return static_cast<double>(static_cast<uint32_t>(later - earlier));
}

} // namespace

StatsSampler::StatsSampler(HostStatistics& host, Scheduler& scheduler)
    : m_host(host), m_scheduler(scheduler), m_memoryTotal(host.physicalMemory()) {}

void StatsSampler::attach(const QString& consumer) {
    m_consumers.insert(consumer);
    if (m_timer)
        return;
    sample();
    m_timer = m_scheduler.every(interval, tolerance, [this] { sample(); });
}

void StatsSampler::detach(const QString& consumer) {
    m_consumers.erase(consumer);
    if (m_consumers.empty())
        m_timer.reset();
}

void StatsSampler::sample() {
    measureCPU();
    measureMemory();
    measureNetwork();
    measureBattery();
    append(m_cpuHistory, m_cpu, &StatsSampler::cpuHistoryChanged);
    append(m_memoryHistory,
           m_memoryTotal > 0
               ? static_cast<double>(m_memoryUsed) / static_cast<double>(m_memoryTotal)
               : 0,
           &StatsSampler::memoryHistoryChanged);
    append(m_downHistory, m_downBytesPerSec, &StatsSampler::downHistoryChanged);
    if (onTick)
        onTick();
}

void StatsSampler::measureCPU() {
    const std::optional<CPUTicks> now = m_host.cpuTicks();
    if (!now)
        return;
    if (m_lastCPU) {
        const double busy = ticksBetween(m_lastCPU->user, now->user) +
                            ticksBetween(m_lastCPU->system, now->system) +
                            ticksBetween(m_lastCPU->nice, now->nice);
        const double total = busy + ticksBetween(m_lastCPU->idle, now->idle);
        assign(m_cpu, total > 0 ? busy / total : 0, &StatsSampler::cpuChanged);
    }
    m_lastCPU = now;
}

void StatsSampler::measureMemory() {
    const std::optional<MemoryPages> pages = m_host.memoryPages();
    if (!pages)
        return;
    const uint64_t used = pages->internal - std::min(pages->internal, pages->purgeable) +
                          pages->wired + pages->compressor;
    assign(m_memoryUsed, used * pages->pageSize, &StatsSampler::memoryUsedChanged);
}

void StatsSampler::measureNetwork() {
    const auto interfaces = m_host.networkInterfaces();
    if (!interfaces || interfaces->empty())
        return;
    NetworkTotals now;
    for (const NetworkInterface& interface : *interfaces) {
        if (!interface.isUp || interface.isLoopback)
            continue;
        now.down += interface.received;
        now.up += interface.sent;
    }
    // Sleep counts: bytes that came before it must not look as if they came in an instant.
    now.at = m_host.uptime();
    if (m_lastNet && now.at > m_lastNet->at && now.down >= m_lastNet->down &&
        now.up >= m_lastNet->up) {
        const double seconds = std::chrono::duration<double>(now.at - m_lastNet->at).count();
        assign(m_downBytesPerSec, static_cast<double>(now.down - m_lastNet->down) / seconds,
               &StatsSampler::downBytesPerSecChanged);
        assign(m_upBytesPerSec, static_cast<double>(now.up - m_lastNet->up) / seconds,
               &StatsSampler::upBytesPerSecChanged);
    }
    m_lastNet = now;
}

void StatsSampler::measureBattery() {
    const auto sources = m_host.powerSources();
    if (!sources)
        return;
    const auto found = std::find_if(sources->begin(), sources->end(), [](const PowerSource& each) {
        return each.type == PowerSource::Type::internalBattery && each.currentCapacity &&
               each.maxCapacity >= 1;
    });
    if (found == sources->end()) {
        assign(m_battery, std::optional<int>(), &StatsSampler::batteryChanged);
        return;
    }
    const auto percent = static_cast<int>(*found->currentCapacity * 100 / *found->maxCapacity);
    assign(m_battery, std::optional(percent), &StatsSampler::batteryChanged);
    assign(m_charging, found->isCharging, &StatsSampler::chargingChanged);
}

template<typename Value>
void StatsSampler::assign(Value& field, const Value& value, void (StatsSampler::*changed)()) {
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*changed)();
}

void StatsSampler::append(History& history, double value, void (StatsSampler::*changed)()) {
    std::shift_left(history.begin(), history.end(), 1);
    history.back() = value;
    Q_EMIT(this->*changed)();
}

} // namespace quillet
