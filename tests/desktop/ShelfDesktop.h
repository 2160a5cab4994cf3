#pragma once

#include "desktop/ClipboardDesktop.h"

#include <QRect>

namespace quillet {

/// A text editor as the program that the user works in.
class Editor {
public:
    /// Returns when the user can type into it and it is the active window.
    explicit Editor(DesktopSession& session);

    QString text();
    xcb_window_t window() const { return m_window; }

private:
    ProcessHandle m_process;
    QString m_text;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    bool m_isActive = false;

    void read();
};

/// Counts how often the window manager says which window is the active one.
class ActiveWindowLog {
public:
    explicit ActiveWindowLog(const QByteArray& display);

    /// Since the last time.
    int writes();

private:
    XClient m_client;
};

/// The window that the window manager says is the active one.
xcb_window_t activeWindow(XClient& client);

/// The shelf on a desktop, seen and driven as users do.
class ShelfDesktop : public ClipboardDesktop {
protected:
    /// Runs xdotool with these words.
    static void press(const QString& words);

    /// Presses the shelf's shortcut until the shelf has the keyboard.
    static void openShelf(const QString& key = QStringLiteral("v"));
    static bool isShelfGone() {
        return eventually([] { return !windowNamed("Quillet Shelf"); });
    }

    /// Whether some program takes all keys for itself.
    static bool isKeyboardGrabbed();

    /// A window directly on the root that is to be seen, native pixels.
    static std::optional<QRect> windowNamed(const QByteArray& title);

    /// Copies texts, the last of which becomes the newest clip.
    void fillHistory(const std::vector<std::string>& texts);
};

} // namespace quillet
