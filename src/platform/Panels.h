#pragma once

#include "platform/Geometry.h"

#include <functional>
#include <memory>

class QWidget;

namespace quillet {

/// How a panel behaves among the windows of the desktop. None of them activates this program.
struct PanelStyle {
    int level = 0;             ///< higher stands above lower; ordinary windows are at 0
    bool canBecomeKey = false; ///< may take the keyboard
    bool ignoresMouse = false; ///< clicks reach what is below
    double margin = 0;         ///< points of clear window around the frame, for the shadow; clicks
                               ///< there reach what is below
    double cornerRadius = 0;   ///< of the card, for where it has to be cut to shape
};

/// A window without title bar that floats above ordinary windows, on every desktop and over
/// full-screen programs. Destroying it takes the window off the screen; the widget stays.
class Panel {
public:
    virtual ~Panel() = default;

    /// Desktop points, y upwards; the card without the margin.
    virtual void setFrame(const Rect& frame) = 0;
    virtual Rect frame() const = 0;

    virtual void setAlpha(double alpha) = 0; ///< 0 … 1
    virtual double alpha() const = 0;

    /// Shows it above its like without giving it the keyboard.
    virtual void orderFront() = 0;

    /// Shows it and takes the keyboard, while the desktop's active window stays the same.
    virtual void makeKeyAndOrderFront() = 0;

    /// Gives the keyboard back while the window stays on the screen.
    virtual void giveKeyboardBack() = 0;

    /// Gives the keyboard back and takes the window off the screen at once.
    virtual void orderOut() = 0;

    virtual bool isVisible() const = 0;
    virtual bool isKey() const = 0;

    /// Called when it had the keyboard and the user turned to another window: a click outside, or
    /// another window became the active one. Not called by giveKeyboardBack() and orderOut().
    std::function<void()> onResignKey;
};

class Panels {
public:
    virtual ~Panels() = default;

    /// Makes a panel of a top-level widget that has not been shown yet and outlives the panel.
    [[nodiscard]] virtual std::unique_ptr<Panel> make(QWidget& content,
                                                      const PanelStyle& style) = 0;

    /// Whether windows can be translucent: a compositor runs. Without one panels are opaque, cut
    /// to shape, and cast no shadow.
    virtual bool isTranslucent() const = 0;
};

} // namespace quillet
