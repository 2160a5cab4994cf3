#include "platform/linux/x11/ScreenGeometry.h"

#include <algorithm>
#include <array>

namespace quillet {

namespace {

bool overlap(const PixelRect& a, const PixelRect& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

/// The one that holds most of a rectangle, the first where none holds any of it.
template<typename Monitors, typename ShareIn>
const MonitorPixels& mostOf(const Monitors& monitors, ShareIn shareIn) {
    return *std::max_element(monitors.begin(), monitors.end(),
                             [&](const auto& a, const auto& b) { return shareIn(a) < shareIn(b); });
}

} // namespace

PixelRect PixelRect::intersection(const PixelRect& other) const {
    if (!overlap(*this, other))
        return {};
    const int left = std::max(x, other.x);
    const int top = std::max(y, other.y);
    return {left, top, std::min(right(), other.right()) - left,
            std::min(bottom(), other.bottom()) - top};
}

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

Rect ScreenGeometry::rectOf(const PixelRect& pixels) const {
    if (m_monitors.empty())
        return {};
    const MonitorPixels& monitor = mostOf(m_monitors, [&](const MonitorPixels& m) {
        const PixelRect common = pixels.intersection({m.x, m.y, m.width, m.height});
        return common.width * common.height;
    });
    return frame(monitor, pixels.x, pixels.y, pixels.width, pixels.height);
}

PixelRect ScreenGeometry::pixelsOf(const Rect& rect) const {
    if (m_monitors.empty())
        return {};
    const MonitorPixels& m = mostOf(m_monitors, [&](const MonitorPixels& candidate) {
        const Size common = rect.intersection(frame(candidate, candidate.x, candidate.y,
                                                    candidate.width, candidate.height))
                                .size;
        return common.width * common.height;
    });
    const Rect inPoints = topLeft(rect);
    const auto pixel = [&](double point, int origin) {
        return origin + static_cast<int>(std::lround((point - origin) * m.scale));
    };
    const int left = pixel(inPoints.minX(), m.x);
    const int top = pixel(inPoints.minY(), m.y);
    return {left, top, pixel(inPoints.maxX(), m.x) - left, pixel(inPoints.maxY(), m.y) - top};
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
        const PixelRect whole{m.x, m.y, m.width, m.height};
        int left = m.x, top = m.y, right = whole.right(), bottom = whole.bottom();
        for (const Strut& s : struts) {
            const std::array reserved = {
                PixelRect{0, s.leftStart, s.left, s.leftEnd - s.leftStart + 1},
                PixelRect{rootWidth - s.right, s.rightStart, s.right,
                          s.rightEnd - s.rightStart + 1},
                PixelRect{s.topStart, 0, s.topEnd - s.topStart + 1, s.top},
                PixelRect{s.bottomStart, rootHeight - s.bottom, s.bottomEnd - s.bottomStart + 1,
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

void applyWorkAreas(std::vector<MonitorPixels>& monitors, const std::vector<PixelRect>& areas) {
    for (MonitorPixels& m : monitors) {
        const auto own = std::ranges::find_if(areas, [&m](const PixelRect& area) {
            return area != PixelRect{} && area.intersection({m.x, m.y, m.width, m.height}) == area;
        });
        if (own == areas.end())
            continue;
        m.workX = own->x;
        m.workY = own->y;
        m.workWidth = own->width;
        m.workHeight = own->height;
    }
}

} // namespace quillet
