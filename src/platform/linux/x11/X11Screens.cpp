#include "platform/linux/x11/X11Screens.h"

#include <QGuiApplication>
#include <QScreen>
#include <xcb/randr.h>

namespace quillet {

namespace {

double scaleOf(const QString& name) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen->name() == name)
            return screen->devicePixelRatio();
    }
    return qGuiApp->devicePixelRatio();
}

} // namespace

X11Screens::X11Screens(X11Connection& connection) : m_connection(connection) {
    // The toolkit has to know of a change first, as it places the windows.
    const auto notify = [this] { notifyObservers(); };
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &m_context,
                     [this](const QScreen* screen) { follow(*screen); });
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &m_context, notify,
                     Qt::QueuedConnection);
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &m_context, notify,
                     Qt::QueuedConnection);
    for (const QScreen* screen : QGuiApplication::screens())
        follow(*screen);
}

void X11Screens::follow(const QScreen& screen) {
    const auto notify = [this] { notifyObservers(); };
    QObject::connect(&screen, &QScreen::geometryChanged, &m_context, notify, Qt::QueuedConnection);
    QObject::connect(&screen, &QScreen::availableGeometryChanged, &m_context, notify,
                     Qt::QueuedConnection);
}

std::vector<Screen> X11Screens::all() const {
    std::vector<MonitorPixels> found = monitors();
    takeOutStruts(found);
    return ScreenGeometry(std::move(found)).screens();
}

Point X11Screens::mouseLocation() const {
    const XcbOwned<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        m_connection.xcb(), xcb_query_pointer(m_connection.xcb(), m_connection.root()), nullptr));
    if (!pointer)
        return {};
    return ScreenGeometry(monitors()).pointAt(pointer->root_x, pointer->root_y);
}

std::vector<MonitorPixels> X11Screens::monitors() const {
    xcb_connection_t* xcb = m_connection.xcb();
    const auto geometryAsked = xcb_get_geometry(xcb, m_connection.root());
    const XcbOwned<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(
        xcb, xcb_randr_get_monitors(xcb, m_connection.root(), 1), nullptr));
    const XcbOwned<xcb_get_geometry_reply_t> root(
        xcb_get_geometry_reply(xcb, geometryAsked, nullptr));
    if (!root)
        return {};
    std::vector<MonitorPixels> monitors;
    if (reply) {
        for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem > 0;
             xcb_randr_monitor_info_next(&it)) {
            MonitorPixels monitor;
            monitor.name = QString::fromUtf8(m_connection.atomNames({it.data->name}).value(0));
            monitor.x = it.data->x;
            monitor.y = it.data->y;
            monitor.width = it.data->width;
            monitor.height = it.data->height;
            monitor.isPrimary = it.data->primary;
            monitor.scale = scaleOf(monitor.name);
            monitors.push_back(monitor);
        }
    }
    if (monitors.empty()) {
        MonitorPixels whole;
        whole.width = root->width;
        whole.height = root->height;
        whole.scale = qGuiApp->devicePixelRatio();
        monitors.push_back(whole);
    }
    return monitors;
}

void X11Screens::takeOutStruts(std::vector<MonitorPixels>& monitors) const {
    const XcbOwned<xcb_get_geometry_reply_t> root(xcb_get_geometry_reply(
        m_connection.xcb(), xcb_get_geometry(m_connection.xcb(), m_connection.root()), nullptr));
    if (!root)
        return;
    std::vector<Strut> struts;
    const auto clients = m_connection.values(
        m_connection.root(), m_connection.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
    for (const xcb_window_t client : clients) {
        auto v = m_connection.values(client, m_connection.atom("_NET_WM_STRUT_PARTIAL"),
                                     XCB_ATOM_CARDINAL, 12);
        if (v.size() != 12) {
            v = m_connection.values(client, m_connection.atom("_NET_WM_STRUT"), XCB_ATOM_CARDINAL,
                                    4);
            if (v.size() != 4)
                continue;
            const auto width = static_cast<uint32_t>(root->width - 1);
            const auto height = static_cast<uint32_t>(root->height - 1);
            v.insert(v.end(), {0, height, 0, height, 0, width, 0, width});
        }
        const auto at = [&v](size_t i) { return static_cast<int>(v[i]); };
        struts.push_back(
            {at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9), at(10), at(11)});
    }
    applyStruts(monitors, struts, root->width, root->height);
}

} // namespace quillet
