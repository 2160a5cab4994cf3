#pragma once

#include "support/XClient.h"

#include <array>
#include <QRect>

namespace quillet {

/// What a window is like that a FakeApplication opens.
struct WindowForm {
    QRect frame{40, 40, 320, 200};
    QSize minimum{1, 1};
    QSize step{1, 1};
    int ownShadow = 0; ///< draws its frame itself, with a shadow this wide on every side
    QByteArray type{}; ///< one of _NET_WM_WINDOW_TYPE_*
};

/// A program with one window on the desktop, which the window manager makes the active one.
class FakeApplication {
public:
    /// Returns when the window is active.
    FakeApplication(const QByteArray& display, const QByteArray& windowClass,
                    const WindowForm& form = {});

    bool isActive() const;
    xcb_window_t window() const { return m_shown; }

    /// What one sees of the window, its title bar included, as the server has it.
    QRect visibleFrame() const;

    void setOwnShadow(int width);
    void resize(const QSize& size);
    /// Keeps others from a part of the screen's edges (_NET_WM_STRUT_PARTIAL).
    void reserve(const std::array<uint32_t, 12>& edges);
    void setType(const QByteArray& type);

    /// Has the window manager grant one or two states, as a button of the window would.
    void addStates(const std::vector<QByteArray>& states);
    bool hasState(const QByteArray& state) const;

private:
    void describe(const WindowForm& form);
    QRect geometry(xcb_window_t window) const;

    mutable XClient m_client; // a look at the server leaves the application as it is
    xcb_window_t m_shown = XCB_WINDOW_NONE;
    int m_ownShadow = 0;
};

} // namespace quillet
