#include "hotkeys/SnapPosition.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

double length(SnapPositionRow::Extent extent, double available, double own, double fraction) {
    switch (extent) {
    case SnapPositionRow::Extent::whole:
        return available;
    case SnapPositionRow::Extent::part:
        return fraction * available;
    case SnapPositionRow::Extent::own:
        return std::min(own, available);
    }
    return available;
}

/// How far into the room left free around it something begins, as a share.
double shareBefore(double before, double after) {
    const double free = before + after;
    return free > 0 ? std::clamp(before / free, 0.0, 1.0) : 0;
}

/// The edges between a screen's pixels, counted from an edge of its usable area, which is one.
struct PixelAxis {
    double start;
    double pixelsPerPoint;

    double before(double point) const {
        return start + std::floor(pixels(point) + arithmeticError) / pixelsPerPoint;
    }
    double after(double point) const {
        return start + std::ceil(pixels(point) - arithmeticError) / pixelsPerPoint;
    }

private:
    static constexpr double arithmeticError = 1e-6;
    double pixels(double point) const { return (point - start) * pixelsPerPoint; }
};

} // namespace

const std::vector<SnapPositionRow>& snapPositions() {
    using enum SnapPosition;
    using enum SnapPositionRow::Extent;
    static const std::vector<SnapPositionRow> rows{
        {left, "left"_L1, HotKeyAction::snapLeft, {0, 0}, part, whole},
        {right, "right"_L1, HotKeyAction::snapRight, {1, 0}, part, whole},
        {top, "top"_L1, HotKeyAction::snapTop, {0, 0}, whole, part},
        {bottom, "bottom"_L1, HotKeyAction::snapBottom, {0, 1}, whole, part},
        {maximize, "maximize"_L1, HotKeyAction::maximize, {0, 0}, whole, whole},
        {center, "center"_L1, HotKeyAction::center, {0.5, 0.5}, own, own},
    };
    return rows;
}

const SnapPositionRow& row(SnapPosition position) {
    return *std::ranges::find(snapPositions(), position, &SnapPositionRow::position);
}

std::optional<SnapPosition> snapPosition(const QString& name) {
    const auto found = std::ranges::find(snapPositions(), name, &SnapPositionRow::name);
    return found != snapPositions().end() ? std::optional(found->position) : std::nullopt;
}

Rect snapTarget(const SnapPositionRow& row, const Rect& visible, const Size& window,
                double fraction, double pixelsPerPoint) {
    const Size size{length(row.width, visible.size.width, window.width, fraction),
                    length(row.height, visible.size.height, window.height, fraction)};
    const Point near = anchored(row.anchor, visible, size);
    // Measured from the far edges, so that a window anchored there ends there and not a rounding
    // error further on.
    const Point far{visible.maxX() - (1 - row.anchor.x) * (visible.size.width - size.width),
                    visible.maxY() - (1 - row.anchor.y) * (visible.size.height - size.height)};
    const PixelAxis x{visible.minX(), pixelsPerPoint};
    const PixelAxis y{visible.minY(), pixelsPerPoint};
    const Point origin{x.before(near.x), y.before(near.y)};
    return {origin, {x.after(far.x) - origin.x, y.after(far.y) - origin.y}};
}

Point anchored(const SnapAnchor& anchor, const Rect& area, const Size& size) {
    return {area.minX() + anchor.x * (area.size.width - size.width),
            area.minY() + anchor.y * (area.size.height - size.height)};
}

SnapAnchor anchorIn(const Rect& area, const Rect& frame) {
    return {shareBefore(frame.minX() - area.minX(), area.maxX() - frame.maxX()),
            shareBefore(frame.minY() - area.minY(), area.maxY() - frame.maxY())};
}

} // namespace quillet
