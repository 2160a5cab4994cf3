#pragma once

#include "platform/linux/DesktopEntries.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/Workspace.h"

namespace quillet {

/// Applications by the window manager's active window (_NET_ACTIVE_WINDOW). Who it belongs to is
/// noted when the window becomes active, because it may be gone when somebody asks.
class X11Workspace : public Workspace {
public:
    X11Workspace(X11Connection& connection, DesktopEntries entries);

    std::optional<RunningApplication> frontmost() const override;
    bool activate(const RunningApplication& application) override;
    std::optional<QString> applicationName(const QString& bundleID) const override;
    std::optional<QString> applicationLocation(const QString& bundleID) const override;
    QImage icon(const QString& path, int pixels) const override;
    bool open(const QUrl& url) override;
    void reveal(const QStringList& paths) override;
    void beep() override;

    /// Whether the window manager tells which window is active.
    bool knowsFrontmost() const;

private:
    struct Owner {
        QString className;
        QString instance;
        qint64 pid = 0;
        bool operator==(const Owner&) const = default;
    };

    void noteActiveWindow();
    std::optional<Owner> ownerOf(xcb_window_t window) const;
    RunningApplication application(const Owner& owner) const;

    X11Connection& m_connection;
    mutable DesktopEntries m_entries;
    xcb_atom_t m_activeWindow;
    std::optional<Owner> m_frontmost;
    X11Connection::Listening m_listening;
};

} // namespace quillet
