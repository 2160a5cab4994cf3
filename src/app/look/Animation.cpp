#include "app/look/Animation.h"

#include <cmath>
#include <numbers>

using namespace std::chrono_literals;

namespace quillet {
namespace {

constexpr Scheduler::Duration frame = 16ms;

/// What a step may count at most, so that neither a stall nor a clock set anew makes a jump.
constexpr Scheduler::Duration longestStep = 100ms;

/// A spring counts as at rest when what remains of its swing is below a two-hundredth.
constexpr double restingShare = 0.005;

double seconds(Scheduler::Duration duration) {
    return std::chrono::duration<double>(duration).count();
}

/// The cubic Bézier curve (0, 0) (0, 0) (0.58, 1) (1, 1): y at a given x.
double easeOutCurve(double x) {
    double t = x;
    for (int step = 0; step < 8; ++step) {
        const double error = t * t * (3 * 0.58 * (1 - t) + t) - x;
        const double slope = 6 * 0.58 * t * (1 - t) + 3 * t * t * (1 - 0.58);
        if (slope < 1e-6)
            break;
        t -= error / slope;
    }
    return t * t * (3 - 2 * t);
}

} // namespace

Motion Motion::easeOut(Duration duration) {
    return {duration, [total = seconds(duration)](Duration elapsed) {
                return easeOutCurve(seconds(elapsed) / total);
            }};
}

Motion Motion::spring(Duration response, double damping) {
    const double w = 2 * std::numbers::pi / seconds(response);
    const double d = w * std::sqrt(1 - damping * damping);
    const double rest = -std::log(restingShare) / (damping * w);
    return {Duration(static_cast<qint64>(std::ceil(rest * 1000))),
            [w, d, damping](Duration elapsed) {
                const double t = seconds(elapsed);
                return 1 - std::exp(-damping * w * t) *
                               (std::cos(d * t) + damping * w / d * std::sin(d * t));
            }};
}

void Animation::start(Motion motion, Step step, std::function<void()> done) {
    m_motion = std::move(motion);
    if (isMotionReduced)
        m_motion.duration = 0ms;
    m_step = std::move(step);
    m_done = std::move(done);
    m_elapsed = 0ms;
    m_lastTick = m_scheduler.now();
    m_timer = m_scheduler.every(frame, 0ms, [this] { tick(); });
}

void Animation::tick() {
    const QDateTime now = m_scheduler.now();
    const Scheduler::Duration passed(m_lastTick.msecsTo(now));
    m_elapsed += std::clamp(passed, frame, longestStep);
    m_lastTick = now;
    const Step step = m_step; // either call may start anew or end this object
    if (m_elapsed < m_motion.duration) {
        step(m_motion.progress(m_elapsed));
        return;
    }
    const auto done = std::move(m_done);
    m_timer.reset();
    step(1);
    if (done)
        done();
}

} // namespace quillet
