#pragma once

#include "support/XClient.h"

namespace quillet {

/// A program with one window on the desktop, which the window manager makes the active one.
class FakeApplication {
public:
    /// Returns when the window is active.
    FakeApplication(const QByteArray& display, const QByteArray& windowClass);

    bool isActive() const;

private:
    mutable XClient m_client; // a look at the server leaves the application as it is
    xcb_window_t m_shown = XCB_WINDOW_NONE;
};

} // namespace quillet
