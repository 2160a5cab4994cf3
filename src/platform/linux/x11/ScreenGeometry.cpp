#include "platform/linux/x11/ScreenGeometry.h"

#include <algorithm>
#include <array>

namespace quillet {

namespace {

struct Span {
    int x, y, width, height;
    int right() const { return x + width; }
    int bottom() const { return y + height; }
};

bool overlap(const Span& a, const Span& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

} // namespace

ScreenGeometry::ScreenGeometry(std::vector<MonitorPixels> monitors)
    : m_monitors(std::move(monitors)) {
    std::stable_partition(m_monitors.begin(), m_monitors.end(),
                          [](const MonitorPixels& monitor) { return monitor.isPrimary; });
}

std::vector<Screen> ScreenGeometry::screens() const {
    std::vector<Screen> screens;
    for (const MonitorPixels& m : m_monitors) {
        screens.push_back({static_cast<int>(screens.size()), m.name,
                           frame(m, m.x, m.y, m.width, m.height),
                           frame(m, m.workX, m.workY, m.workWidth, m.workHeight), m.scale});
    }
    return screens;
}

Point ScreenGeometry::pointAt(int pixelX, int pixelY) const {
    if (m_monitors.empty())
        return {};
    const auto under =
        std::find_if(m_monitors.begin(), m_monitors.end(), [&](const MonitorPixels& m) {
            return pixelX >= m.x && pixelX < m.x + m.width && pixelY >= m.y &&
                   pixelY < m.y + m.height;
        });
    const MonitorPixels& monitor = under != m_monitors.end() ? *under : m_monitors.front();
    const Rect place = frame(monitor, pixelX, pixelY, 0, 0);
    return {place.minX(), place.maxY()};
}

Rect ScreenGeometry::topLeft(const Rect& rect) const {
    return {{rect.minX(), base() - rect.maxY()}, rect.size};
}

/// The bottom of the primary monitor, where y is 0, measured downwards.
double ScreenGeometry::base() const {
    if (m_monitors.empty())
        return 0;
    const MonitorPixels& primary = m_monitors.front();
    return primary.y + primary.height / primary.scale;
}

Rect ScreenGeometry::frame(const MonitorPixels& monitor, int x, int y, int width,
                           int height) const {
    const double left = monitor.x + (x - monitor.x) / monitor.scale;
    const double top = monitor.y + (y - monitor.y) / monitor.scale;
    const Size size{width / monitor.scale, height / monitor.scale};
    return {{left, base() - top - size.height}, size};
}

void applyStruts(std::vector<MonitorPixels>& monitors, const std::vector<Strut>& struts,
                 int rootWidth, int rootHeight) {
    for (MonitorPixels& m : monitors) {
        const Span whole{m.x, m.y, m.width, m.height};
        int left = m.x, top = m.y, right = whole.right(), bottom = whole.bottom();
        for (const Strut& s : struts) {
            const std::array reserved = {
                Span{0, s.leftStart, s.left, s.leftEnd - s.leftStart + 1},
                Span{rootWidth - s.right, s.rightStart, s.right, s.rightEnd - s.rightStart + 1},
                Span{s.topStart, 0, s.topEnd - s.topStart + 1, s.top},
                Span{s.bottomStart, rootHeight - s.bottom, s.bottomEnd - s.bottomStart + 1,
                     s.bottom}};
            if (s.left > 0 && overlap(reserved[0], whole) && s.left < whole.right())
                left = std::max(left, s.left);
            if (s.right > 0 && overlap(reserved[1], whole) && reserved[1].x > m.x)
                right = std::min(right, reserved[1].x);
            if (s.top > 0 && overlap(reserved[2], whole) && s.top < whole.bottom())
                top = std::max(top, s.top);
            if (s.bottom > 0 && overlap(reserved[3], whole) && reserved[3].y > m.y)
                bottom = std::min(bottom, reserved[3].y);
        }
        const bool leavesNothing = left >= right || top >= bottom;
        m.workX = leavesNothing ? m.x : left;
        m.workY = leavesNothing ? m.y : top;
        m.workWidth = leavesNothing ? m.width : right - left;
        m.workHeight = leavesNothing ? m.height : bottom - top;
    }
}

} // namespace quillet
