#pragma once

#include "stats/StatsSampler.h"

#include <list>

namespace quillet {

/// Tells what the machine is doing at this moment, for who asks once. Each question is measured
/// over a span of its own, so the answer is fresh whether or not anybody else is looking, and
/// the histories that they look at stay as they are.
class StatsReporter {
public:
    using Reply = std::function<void(const StatsSampler&)>;

    static constexpr std::chrono::milliseconds shortSpan{1000};

    /// The pace of the sampler, whose own tick at its end would split the span.
    static constexpr std::chrono::milliseconds longSpan =
        StatsSampler::interval - std::chrono::milliseconds(1);

    StatsReporter(HostStatistics& host, Scheduler& scheduler)
        : m_host(host), m_scheduler(scheduler) {}

    /// `reply` runs once, after the span. It is dropped when this object dies first.
    void measure(Reply reply, std::chrono::milliseconds span = shortSpan);

private:
    struct Measurement {
        Measurement(HostStatistics& host, Scheduler& scheduler) : sampler(host, scheduler) {}

        StatsSampler sampler;
        std::unique_ptr<Timer> end;
    };

    HostStatistics& m_host;
    Scheduler& m_scheduler;
    std::list<Measurement> m_running;
};

} // namespace quillet
