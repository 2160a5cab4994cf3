#pragma once

#include "hotkeys/SnapPosition.h"
#include "platform/Alive.h"
#include "platform/FocusedWindow.h"
#include "platform/Screens.h"
#include "platform/Workspace.h"
#include "settings/Permissions.h"

#include <functional>
#include <optional>
#include <vector>

namespace quillet {

/// Moves and resizes the focused window. The same side pressed again for the same window goes on
/// to the next fraction of the screen.
///
/// An operation asks and returns; where it cannot even ask, the user was told and the outcome says
/// why. What comes of it is looked at later, and again when the program had second thoughts. A
/// window of quite another size or place is asked once more: its program may have put back the
/// size from before it was maximised, or the window manager may hold it where it tiled it. The size
/// that it takes then it may keep; it is moved once to the edges where it belongs. Where it still
/// is not in its place, it is left there and the user hears one beep. None of that counts as the
/// user's choice of a place.
class WindowSnapper {
public:
    using Position = SnapPosition;
    struct Services {
        Permissions& permissions;
        FocusedWindow& windows;
        Screens& screens;
        Workspace& workspace;
    };

    WindowSnapper(Services services, std::function<void()> showSetupGuide);

    enum class Outcome { moves, noPermission, noWindow, noOtherDisplay, nothingToRestore };

    Outcome snap(Position position);

    /// Back to where the window was before it was moved from here, however often that was, and
    /// maximised or full-screen again where it was that.
    Outcome restore();

    /// To the same relative place on the next screen, after the last one to the first.
    Outcome moveToNextDisplay();

private:
    using Identity = FocusedWindow::Identity;
    struct Window {
        Identity id = 0;
        Rect frame;
        WindowFill fill;
    };
    struct Move {
        Window window; ///< as it was before
        Rect target;
        SnapAnchor anchor{};
        WindowFill fill{};
        bool askedAgain = false;
        bool anchored = false;
        bool refused = false;
    };
    struct Snap {
        Position position;
        size_t step;
        Identity window;
    };
    struct Past {
        Window before;
        Rect target;               ///< where it was asked to be last
        std::optional<Rect> after; ///< where that led; absent while the window is on its way

        bool isStillThere(const Window& window) const;
    };

    std::optional<Window> focusedWindow();
    Outcome whyNoWindow() const;
    std::optional<Screen> screenContaining(const Rect& frame, const std::vector<Screen>& screens);
    void move(const Move& move);
    void apply(Move move, const Rect& place);
    void verify(Move& move, const std::optional<Rect>& frame);
    void letGo(Move move);
    Outcome refuse(Outcome outcome);

    void noteBefore(const Window& window);
    void noteAfter(Identity window, const std::optional<Rect>& frame);
    std::vector<Past>::iterator pastOf(Identity window);

    Services m_services;
    std::function<void()> m_showSetupGuide;
    std::optional<Snap> m_last;
    std::vector<Past> m_pasts; ///< of the windows moved last, the latest at the end
    Alive m_alive;
};

} // namespace quillet
