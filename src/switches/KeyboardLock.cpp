#include "switches/KeyboardLock.h"

#include <algorithm>
#include <cmath>

namespace quillet {

using namespace std::chrono_literals;

namespace {

constexpr auto tickInterval = 500ms;

/// Those begun included.
int wholeSeconds(qint64 milliseconds) {
    return std::max(0, static_cast<int>(std::ceil(static_cast<double>(milliseconds) / 1000)));
}

} // namespace

void HUDState::setRemaining(int remaining) {
    if (m_remaining == remaining)
        return;
    m_remaining = remaining;
    Q_EMIT remainingChanged();
}

KeyboardLock::KeyboardLock(KeyboardGrab& keyboard, Scheduler& scheduler, ShowHUD showHUD)
    : m_keyboard(keyboard), m_scheduler(scheduler), m_showHUD(std::move(showHUD)) {}

bool KeyboardLock::start(double seconds) {
    if (m_hold)
        return true;
    m_hold = m_keyboard.hold();
    if (!m_hold)
        return false;
    const std::chrono::milliseconds time(std::llround(seconds * 1000));
    m_endDate = m_scheduler.now().addMSecs(time.count());
    m_wholeTime = wholeSeconds(time.count());
    updateHUD();
    m_hud = m_showHUD(m_hudState, m_alive([this] { stop(); }));
    m_timer = m_scheduler.every(tickInterval, 0ms, [this] { tick(); });
    m_end = m_scheduler.after(time, [this] { stop(); });
    return true;
}

void KeyboardLock::stop() {
    m_timer.reset();
    m_end.reset();
    m_hold.reset();
    m_hud.reset();
    if (onEnd)
        onEnd();
}

void KeyboardLock::tick() {
    if (m_scheduler.now() >= m_endDate)
        stop();
    else
        updateHUD();
}

void KeyboardLock::updateHUD() {
    m_hudState.setRemaining(
        std::min(wholeSeconds(m_scheduler.now().msecsTo(m_endDate)), m_wholeTime));
}

} // namespace quillet
