#pragma once

#include <algorithm>
#include <cmath>

namespace quillet {

// Desktop geometry in points. Unless a name says `topLeft`, y grows upwards from the bottom left
// corner of the primary screen.

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    Point origin;
    Size size;
    bool operator==(const Rect&) const = default;

    double minX() const { return origin.x; }
    double midX() const { return origin.x + size.width / 2; }
    double maxX() const { return origin.x + size.width; }
    double minY() const { return origin.y; }
    double midY() const { return origin.y + size.height / 2; }
    double maxY() const { return origin.y + size.height; }
    bool isEmpty() const { return size.width <= 0 || size.height <= 0; }

    Rect inset(double dx, double dy) const {
        return {{origin.x + dx, origin.y + dy}, {size.width - 2 * dx, size.height - 2 * dy}};
    }

    /// The smallest rectangle with whole-numbered edges that contains this one.
    Rect integral() const {
        const double left = std::floor(minX());
        const double bottom = std::floor(minY());
        return {{left, bottom}, {std::ceil(maxX()) - left, std::ceil(maxY()) - bottom}};
    }

    /// The common part; an empty rectangle at the origin where there is none.
    Rect intersection(const Rect& other) const {
        const double left = std::max(minX(), other.minX());
        const double bottom = std::max(minY(), other.minY());
        const Rect common{
            {left, bottom},
            {std::min(maxX(), other.maxX()) - left, std::min(maxY(), other.maxY()) - bottom}};
        return common.isEmpty() ? Rect{} : common;
    }

    /// Plain containment: the minimum edges belong to the rectangle, the maximum edges do not.
    bool contains(const Point& point) const {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }

    /// Containment of a pointer location in a screen. The pointer's top row has y == maxY, so of
    /// the two vertical edges the maximum is inside and the minimum belongs to the screen below.
    bool containsPointer(const Point& point) const {
        return point.x >= minX() && point.x < maxX() && point.y > minY() && point.y <= maxY();
    }
};

/// The same rectangle measured the other way: from y upwards from the bottom left of a primary
/// screen of this height to y downwards from its top left, or back.
inline Rect flipped(const Rect& rect, double primaryHeight) {
    return {{rect.minX(), primaryHeight - rect.maxY()}, rect.size};
}

} // namespace quillet
