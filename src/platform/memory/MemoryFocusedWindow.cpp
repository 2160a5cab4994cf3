#include "platform/memory/MemoryFocusedWindow.h"

#include <utility>

namespace quillet {
namespace {

constexpr Scheduler::Duration changeOfMind{20};

double allowed(double wanted, double minimum, double step) {
    return std::max(std::floor(wanted / step) * step, minimum);
}

} // namespace

std::optional<Rect> MemoryFocusedWindow::topLeftFrame(Identity window) const {
    const auto found = m_windows.find(window);
    return found != m_windows.end() ? std::optional(found->second.frame) : std::nullopt;
}

void MemoryFocusedWindow::setSize(Identity window, const Size& size) {
    const auto found = m_windows.find(window);
    if (found == m_windows.end() || !found->second.obeys || found->second.isTiled)
        return;
    Window& w = found->second;
    w.fill = {};
    w.frame.size = {allowed(size.width, w.minimum.width, w.step.width),
                    allowed(size.height, w.minimum.height, w.step.height)};
    if (!w.room.isEmpty())
        w.frame.size = w.frame.intersection(w.room).size;
}

void MemoryFocusedWindow::setTopLeft(Identity window, const Point& corner) {
    const auto found = m_windows.find(window);
    if (found == m_windows.end())
        return;
    ++found->second.requests;
    if (!found->second.obeys || found->second.isTiled)
        return;
    found->second.fill = {};
    found->second.frame.origin = corner;
}

WindowFill MemoryFocusedWindow::fill(Identity window) const {
    const auto found = m_windows.find(window);
    return found != m_windows.end() ? found->second.fill : WindowFill{};
}

void MemoryFocusedWindow::setFill(Identity window, const WindowFill& fill) {
    const auto found = m_windows.find(window);
    if (found == m_windows.end() || !found->second.obeys)
        return;
    found->second.fill = fill;
    found->second.isTiled = false;
}

void MemoryFocusedWindow::whenSettled(Identity window, Settled settled) {
    m_waiting[window] = {std::move(settled),
                         m_scheduler.after(Scheduler::Duration(0), [=, this] { report(window); })};
}

FocusedWindow::Identity MemoryFocusedWindow::open(const Rect& topLeftFrame) {
    m_focused = ++m_lastIdentity;
    m_windows[m_lastIdentity].frame = topLeftFrame;
    return m_lastIdentity;
}

void MemoryFocusedWindow::close(Identity window) {
    m_windows.erase(window);
    if (m_focused == window)
        m_focused.reset();
}

void MemoryFocusedWindow::report(Identity window) {
    Settled settled = std::move(m_waiting.extract(window).mapped().first);
    settled(topLeftFrame(window));
    const auto found = m_windows.find(window);
    if (found == m_windows.end() || !found->second.lateSize || m_waiting.contains(window) ||
        found->second.frame.size == *found->second.lateSize)
        return;
    const auto changeItsMind = [this, window] {
        const auto open = m_windows.find(window);
        if (open != m_windows.end() && open->second.lateSize)
            open->second.frame.size = *open->second.lateSize;
        report(window);
    };
    m_waiting[window] = {std::move(settled), m_scheduler.after(changeOfMind, changeItsMind)};
}

} // namespace quillet
