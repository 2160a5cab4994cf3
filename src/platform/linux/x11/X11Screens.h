#pragma once

#include "platform/linux/x11/ScreenGeometry.h"
#include "platform/linux/x11/X11Connection.h"

class QScreen;

namespace quillet {

/// Monitors by RandR 1.5, their work areas by the panels' struts, their scale by the toolkit.
class X11Screens : public Screens {
public:
    explicit X11Screens(X11Connection& connection);

    std::vector<Screen> all() const override;
    Point mouseLocation() const override;

    /// Where the monitors are, without their work areas.
    ScreenGeometry geometry() const { return ScreenGeometry(monitors()); }

private:
    void follow(const QScreen& screen);
    std::vector<MonitorPixels> monitors() const;
    void takeOutStruts(std::vector<MonitorPixels>& monitors) const;

    X11Connection& m_connection;
    QObject m_context; ///< of the connections to the toolkit's signals
};

} // namespace quillet
