#include "stats/StatsReporter.h"

namespace quillet {

using namespace Qt::StringLiterals;

void StatsReporter::measure(Reply reply, std::chrono::milliseconds span) {
    const auto running = m_running.emplace(m_running.end(), m_host, m_scheduler);
    running->sampler.attach(u"begin"_s);
    running->end = m_scheduler.after(span, [this, running, reply = std::move(reply)] {
        std::list<Measurement> ended;
        ended.splice(ended.end(), m_running, running);
        StatsSampler& sampler = ended.front().sampler;
        sampler.detach(u"begin"_s);
        sampler.attach(u"end"_s);
        reply(sampler);
    });
}

} // namespace quillet
