#include "platform/linux/x11/X11Screens.h"

#include <algorithm>
#include <QGuiApplication>
#include <QScreen>
#include <xcb/randr.h>

namespace quillet {

namespace {

constexpr uint32_t mostClients = 1024;
constexpr uint32_t mostAreas = 64;

double scaleOf(const QString& name) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen->name() == name)
            return screen->devicePixelRatio();
    }
    return qGuiApp->devicePixelRatio();
}

std::vector<uint32_t> valuesOf(xcb_connection_t* xcb, xcb_get_property_cookie_t asked) {
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, asked, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

Point pointerIn(const ScreenGeometry& monitors, xcb_connection_t* xcb,
                xcb_query_pointer_cookie_t asked) {
    const XcbOwned<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(xcb, asked, nullptr));
    return pointer ? monitors.pointAt(pointer->root_x, pointer->root_y) : Point{};
}

/// What is asked of windows about the space that they reserve.
class StrutQuestions {
public:
    StrutQuestions(const X11Connection& connection, const std::vector<xcb_window_t>& windows)
        : m_xcb(connection.xcb()) {
        const auto ask = [&](xcb_window_t window, const QByteArray& name, uint32_t count) {
            return xcb_get_property(m_xcb, 0, window, connection.atom(name), XCB_ATOM_CARDINAL, 0,
                                    count);
        };
        for (const xcb_window_t window : windows)
            m_asked.push_back({window, ask(window, "_NET_WM_STRUT_PARTIAL", 12),
                               ask(window, "_NET_WM_STRUT", 4)});
    }

    /// The answers of those windows that are still there.
    std::vector<Strut> answers(const std::vector<xcb_window_t>& present, int rootWidth,
                               int rootHeight) const {
        std::vector<Strut> struts;
        for (const Asked& asked : m_asked) {
            auto v = valuesOf(m_xcb, asked.partial);
            const auto whole = valuesOf(m_xcb, asked.whole);
            if (std::ranges::find(present, asked.window) == present.end())
                continue;
            if (v.size() != 12) {
                if (whole.size() != 4)
                    continue;
                const auto width = static_cast<uint32_t>(rootWidth - 1);
                const auto height = static_cast<uint32_t>(rootHeight - 1);
                v = whole;
                v.insert(v.end(), {0, height, 0, height, 0, width, 0, width});
            }
            const auto at = [&v](size_t i) { return static_cast<int>(v[i]); };
            struts.push_back({at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9),
                              at(10), at(11)});
        }
        return struts;
    }

private:
    struct Asked {
        xcb_window_t window;
        xcb_get_property_cookie_t partial;
        xcb_get_property_cookie_t whole;
    };

    xcb_connection_t* m_xcb;
    std::vector<Asked> m_asked;
};

std::vector<PixelRect> rectangles(const std::vector<uint32_t>& values) {
    std::vector<PixelRect> rectangles;
    for (size_t i = 0; i + 4 <= values.size(); i += 4) {
        const auto at = [&](size_t offset) { return static_cast<int>(values[i + offset]); };
        rectangles.push_back({at(0), at(1), at(2), at(3)});
    }
    return rectangles;
}

/// What is asked of the window manager about the usable areas of a virtual desktop.
class WorkAreaQuestions {
public:
    WorkAreaQuestions(const X11Connection& connection, uint32_t desktop)
        : m_connection(connection),
          m_desktop(desktop),
          m_current(ask("_NET_CURRENT_DESKTOP", 1)),
          m_monitors(askForMonitors(desktop)),
          m_desktops(ask("_NET_WORKAREA", 4 * mostAreas)) {}

    struct Answers {
        uint32_t desktop = 0;
        std::vector<PixelRect> ofMonitors;
        std::vector<PixelRect> ofDesktops;
    };

    Answers answers() const {
        const auto current = valuesOf(m_connection.xcb(), m_current);
        Answers answers{current.empty() ? 0 : current.front(),
                        rectangles(valuesOf(m_connection.xcb(), m_monitors)),
                        rectangles(valuesOf(m_connection.xcb(), m_desktops))};
        if (answers.desktop != m_desktop) {
            answers.ofMonitors =
                rectangles(valuesOf(m_connection.xcb(), askForMonitors(answers.desktop)));
        }
        return answers;
    }

private:
    xcb_get_property_cookie_t ask(const QByteArray& name, uint32_t count) const {
        return xcb_get_property(m_connection.xcb(), 0, m_connection.root(), m_connection.atom(name),
                                XCB_ATOM_CARDINAL, 0, count);
    }
    xcb_get_property_cookie_t askForMonitors(uint32_t desktop) const {
        return ask("_GTK_WORKAREAS_D" + QByteArray::number(desktop), 4 * mostAreas);
    }

    const X11Connection& m_connection;
    uint32_t m_desktop;
    xcb_get_property_cookie_t m_current;
    xcb_get_property_cookie_t m_monitors;
    xcb_get_property_cookie_t m_desktops;
};

} // namespace

X11Screens::X11Screens(X11Connection& connection) : m_connection(connection) {
    // The toolkit has to know of a change first, as it places the windows.
    const auto notify = [this] { screensChanged(); };
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
    const auto notify = [this] { screensChanged(); };
    QObject::connect(&screen, &QScreen::geometryChanged, &m_context, notify, Qt::QueuedConnection);
    QObject::connect(&screen, &QScreen::availableGeometryChanged, &m_context, notify,
                     Qt::QueuedConnection);
}

void X11Screens::screensChanged() {
    m_last.reset();
    notifyObservers();
}

std::vector<Screen> X11Screens::all() const {
    return geometryWithWorkAreas().screens();
}

Point X11Screens::mouseLocation() const {
    const auto asked = xcb_query_pointer(m_connection.xcb(), m_connection.root());
    const ScreenGeometry monitors = geometry();
    return pointerIn(monitors, m_connection.xcb(), asked);
}

std::optional<Screen> X11Screens::main() const {
    const auto asked = xcb_query_pointer(m_connection.xcb(), m_connection.root());
    const ScreenGeometry monitors = geometryWithWorkAreas();
    return screenOfPointer(pointerIn(monitors, m_connection.xcb(), asked), monitors.screens());
}

ScreenGeometry X11Screens::lastGeometry() const {
    return m_last ? ScreenGeometry(*m_last) : geometry();
}

X11Screens::Monitors X11Screens::monitors() const {
    xcb_connection_t* xcb = m_connection.xcb();
    const auto geometryAsked = xcb_get_geometry(xcb, m_connection.root());
    const XcbOwned<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(
        xcb, xcb_randr_get_monitors(xcb, m_connection.root(), 1), nullptr));
    const XcbOwned<xcb_get_geometry_reply_t> root(
        xcb_get_geometry_reply(xcb, geometryAsked, nullptr));
    if (!root)
        return {};
    Monitors monitors{{}, root->width, root->height};
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
            monitors.list.push_back(monitor);
        }
    }
    if (monitors.list.empty()) {
        MonitorPixels whole;
        whole.width = root->width;
        whole.height = root->height;
        whole.scale = qGuiApp->devicePixelRatio();
        monitors.list.push_back(whole);
    }
    m_last = monitors.list;
    return monitors;
}

ScreenGeometry X11Screens::geometryWithWorkAreas() const {
    // The windows of last time are asked together with which windows there are, so that only new
    // ones take another round trip.
    const auto clientsAsked =
        xcb_get_property(m_connection.xcb(), 0, m_connection.root(),
                         m_connection.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, 0, mostClients);
    const StrutQuestions known(m_connection, m_clients);
    const WorkAreaQuestions workAreas(m_connection, m_desktop);
    Monitors found = monitors();
    const auto before = std::exchange(m_clients, valuesOf(m_connection.xcb(), clientsAsked));
    std::vector<xcb_window_t> fresh;
    std::ranges::copy_if(m_clients, std::back_inserter(fresh), [&before](xcb_window_t window) {
        return std::ranges::find(before, window) == before.end();
    });
    const StrutQuestions added(m_connection, fresh);
    std::vector<Strut> struts = known.answers(m_clients, found.rootWidth, found.rootHeight);
    std::ranges::copy(added.answers(m_clients, found.rootWidth, found.rootHeight),
                      std::back_inserter(struts));
    applyStruts(found.list, struts, found.rootWidth, found.rootHeight);

    const WorkAreaQuestions::Answers areas = workAreas.answers();
    m_desktop = areas.desktop;
    applyWorkAreas(found.list, areas.ofMonitors);
    if (areas.ofMonitors.empty() && struts.empty() && found.list.size() == 1 &&
        m_desktop < areas.ofDesktops.size())
        applyWorkAreas(found.list, {areas.ofDesktops[m_desktop]});
    return ScreenGeometry(std::move(found.list));
}

} // namespace quillet
