#pragma once

#include "platform/linux/x11/ScreenGeometry.h"
#include "platform/linux/x11/X11Connection.h"

class QScreen;

namespace quillet {

/// Monitors by RandR 1.5, their scale by the toolkit. Their work areas are by the desktop's word
/// for each monitor (_GTK_WORKAREAS_D*), else by the panels' struts; its one work area for all
/// (_NET_WORKAREA) counts where there are neither and one monitor only. As
/// much as possible is asked at once: somebody waits for what is to be placed.
class X11Screens : public Screens {
public:
    explicit X11Screens(X11Connection& connection);

    std::vector<Screen> all() const override;
    Point mouseLocation() const override;
    std::optional<Screen> main() const override;

    /// Where the monitors are, without their work areas.
    ScreenGeometry geometry() const { return ScreenGeometry(monitors().list); }

    /// The same as it was read last, if no change was noticed since. For what moves.
    ScreenGeometry lastGeometry() const;

private:
    struct Monitors {
        std::vector<MonitorPixels> list;
        int rootWidth = 0;
        int rootHeight = 0;
    };

    void follow(const QScreen& screen);
    void screensChanged();
    Monitors monitors() const;
    ScreenGeometry geometryWithWorkAreas() const;

    X11Connection& m_connection;
    mutable std::vector<xcb_window_t> m_clients; ///< the windows there were last time
    mutable uint32_t m_desktop = 0;              ///< the virtual desktop of last time
    mutable std::optional<std::vector<MonitorPixels>> m_last;
    QObject m_context; ///< of the connections to the toolkit's signals
};

} // namespace quillet
