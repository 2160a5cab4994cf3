#pragma once

#include "platform/Geometry.h"

#include <functional>
#include <memory>
#include <optional>
#include <QString>
#include <vector>

namespace quillet {

struct Screen {
    int number = 0;          ///< identity while the screen is connected
    QString name;            ///< the connector's name
    Rect frame;              ///< points, y upwards
    Rect visibleFrame;       ///< frame without panels and docks
    double backingScale = 1; ///< pixels per point
    bool operator==(const Screen&) const = default;
};

/// The first screen that holds a point.
std::optional<Screen> screenWith(Point point, const std::vector<Screen>& screens);

/// The screen of a pointer there: the one that holds it, else the first.
std::optional<Screen> screenOfPointer(Point pointer, const std::vector<Screen>& screens);

/// The connected screens, read anew at each call.
class Screens {
public:
    /// Ends its observation when destroyed.
    using Observation = std::shared_ptr<void>;

    virtual ~Screens() = default;

    /// All screens in the system's order, the primary one first. Empty without a display.
    virtual std::vector<Screen> all() const = 0;

    /// The pointer's location in points, y upwards.
    virtual Point mouseLocation() const = 0;

    /// The screen that has the user's attention: the one with the pointer, else the primary one.
    virtual std::optional<Screen> main() const;

    /// `handler` runs from the event loop when screens have come, gone, or changed their size.
    [[nodiscard]] Observation observe(std::function<void()> handler);

protected:
    void notifyObservers();

private:
    std::vector<std::weak_ptr<std::function<void()>>> m_observers;
};

} // namespace quillet
