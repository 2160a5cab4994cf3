#pragma once

#include "hotkeys/HotKeyActions.h"
#include "platform/Geometry.h"

#include <array>
#include <optional>
#include <QLatin1StringView>

namespace quillet {

// Where windows are snapped to. All rectangles are in points, y downwards from the top left of the
// primary screen.

enum class SnapPosition { left, right, top, bottom, maximize, center };

/// The parts of the usable area that a side takes, in the order of repeated presses.
inline constexpr std::array snapFractions = {1.0 / 2, 2.0 / 3, 1.0 / 3};

/// What stays where it should be when a window takes another size than it was asked to: 0 the left
/// or top edge, 1 the right or bottom one, between them the same relative place.
struct SnapAnchor {
    double x = 0;
    double y = 0;
};

struct SnapPositionRow {
    /// How long a window becomes along one axis.
    enum class Extent { whole, part, own };

    SnapPosition position;
    QLatin1StringView name; ///< on the command line
    HotKeyAction action;
    SnapAnchor anchor;
    Extent width;
    Extent height;

    /// Whether pressing again goes on to the next fraction.
    bool cycles() const { return width == Extent::part || height == Extent::part; }
};

/// Every position once, in its order.
const std::vector<SnapPositionRow>& snapPositions();
const SnapPositionRow& row(SnapPosition position);
std::optional<SnapPosition> snapPosition(const QString& name);

/// Where in the usable area a window of this size goes, in whole pixels of its screen.
Rect snapTarget(const SnapPositionRow& row, const Rect& visible, const Size& window,
                double fraction, double pixelsPerPoint);

/// The origin of something of this size that is anchored in an area.
Point anchored(const SnapAnchor& anchor, const Rect& area, const Size& size);

/// The anchor by which a frame keeps its relative place in an area of another size.
SnapAnchor anchorIn(const Rect& area, const Rect& frame);

} // namespace quillet
