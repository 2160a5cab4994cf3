#pragma once

#include "platform/HostStatistics.h"
#include "platform/Scheduler.h"

#include <array>
#include <functional>
#include <QObject>
#include <QString>
#include <set>

namespace quillet {

/// Measures the machine's load, memory, network and battery every two seconds, but only while
/// somebody wants to know: who looks attaches itself under a name, and without anybody attached
/// nothing runs. What cannot be measured keeps its last value. Tells of a single value when it has
/// changed and of a history at every sample.
class StatsSampler : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds interval{2000};
    static constexpr std::chrono::milliseconds tolerance{500};

    /// Oldest value first.
    using History = std::array<double, 40>;

    StatsSampler(HostStatistics& host, Scheduler& scheduler);

    /// Takes a sample at once when nobody was attached; otherwise the next one comes in its time.
    void attach(const QString& consumer);

    /// Counters are remembered while nobody is attached, so the first sample after a pause is an
    /// average over the pause.
    void detach(const QString& consumer);

    double cpu() const { return m_cpu; } ///< share of the time not idle, 0 to 1
    uint64_t memoryUsed() const { return m_memoryUsed; }
    uint64_t memoryTotal() const { return m_memoryTotal; }
    double downBytesPerSec() const { return m_downBytesPerSec; }
    double upBytesPerSec() const { return m_upBytesPerSec; }
    std::optional<int> battery() const { return m_battery; } ///< percent; absent without one
    bool charging() const { return m_charging; }

    const History& cpuHistory() const { return m_cpuHistory; }
    const History& memoryHistory() const { return m_memoryHistory; } ///< shares of all memory
    const History& downHistory() const { return m_downHistory; }

    /// Called at the end of every sample.
    std::function<void()> onTick;

Q_SIGNALS:
    void cpuChanged();
    void memoryUsedChanged();
    void downBytesPerSecChanged();
    void upBytesPerSecChanged();
    void batteryChanged();
    void chargingChanged();
    void cpuHistoryChanged();
    void memoryHistoryChanged();
    void downHistoryChanged();

private:
    struct NetworkTotals {
        uint64_t down = 0;
        uint64_t up = 0;
        std::chrono::nanoseconds at{};
    };

    void sample();
    void measureCPU();
    void measureMemory();
    void measureNetwork();
    void measureBattery();

    template<typename Value>
    void assign(Value& field, const Value& value, void (StatsSampler::*changed)());
    void append(History& history, double value, void (StatsSampler::*changed)());

    HostStatistics& m_host;
    Scheduler& m_scheduler;
    double m_cpu = 0;
    uint64_t m_memoryUsed = 0;
    const uint64_t m_memoryTotal;
    double m_downBytesPerSec = 0;
    double m_upBytesPerSec = 0;
    std::optional<int> m_battery;
    bool m_charging = false;
    History m_cpuHistory{};
    History m_memoryHistory{};
    History m_downHistory{};
    std::unique_ptr<RepeatingTimer> m_timer; // there exactly while somebody is attached
    std::set<QString> m_consumers;
    std::optional<CPUTicks> m_lastCPU;
    std::optional<NetworkTotals> m_lastNet;
};

} // namespace quillet
