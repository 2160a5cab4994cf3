#pragma once

#include "platform/Screens.h"

#include <QString>
#include <vector>

namespace quillet {

/// A rectangle of native pixels, y downwards from the top left of the root.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelRect&) const = default;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    PixelRect intersection(const PixelRect& other) const;
};

/// A monitor as the X server has it: native pixels, y downwards from the top left of the root.
struct MonitorPixels {
    QString name;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int workX = 0; ///< the part without panels
    int workY = 0;
    int workWidth = 0;
    int workHeight = 0;
    double scale = 1; ///< pixels per point
    bool isPrimary = false;
    bool operator==(const MonitorPixels&) const = default;
};

/// Space that a client reserves along an edge of the root (_NET_WM_STRUT_PARTIAL), native pixels.
struct Strut {
    int left = 0, right = 0, top = 0, bottom = 0;
    int leftStart = 0, leftEnd = 0, rightStart = 0, rightEnd = 0;
    int topStart = 0, topEnd = 0, bottomStart = 0, bottomEnd = 0;
};

/// The only place that turns native pixels into desktop points and back. A monitor keeps its native
/// origin, as the toolkit has it, while its extent is divided by its scale; y is measured upwards
/// from the primary monitor's bottom.
class ScreenGeometry {
public:
    /// The primary monitor is put first; the others keep their order.
    explicit ScreenGeometry(std::vector<MonitorPixels> monitors);

    std::vector<Screen> screens() const;

    /// A native pixel's place in points, measured within the monitor that holds it, else within
    /// the first.
    Point pointAt(int pixelX, int pixelY) const;

    /// A rectangle of native pixels in points, measured within the monitor that holds most of it.
    Rect rectOf(const PixelRect& pixels) const;

    /// The native pixels of a rectangle in points.
    PixelRect pixelsOf(const Rect& rect) const;

    /// A rectangle in points as the toolkit has it: y downwards from the top of the desktop.
    Rect topLeft(const Rect& rect) const;

private:
    double base() const;
    Rect frame(const MonitorPixels& monitor, int x, int y, int width, int height) const;

    std::vector<MonitorPixels> m_monitors;
};

/// Takes what struts reserve out of the monitors' work areas. A strut that would leave nothing of
/// a monitor is ignored there.
void applyStruts(std::vector<MonitorPixels>& monitors, const std::vector<Strut>& struts,
                 int rootWidth, int rootHeight);

/// Gives each monitor the work area that lies in it; a monitor without one keeps what it has.
void applyWorkAreas(std::vector<MonitorPixels>& monitors, const std::vector<PixelRect>& areas);

} // namespace quillet
