#include "support/FakeApplication.h"

#include "support/Eventually.h"

#include <QtGlobal>

namespace quillet {

FakeApplication::FakeApplication(const QByteArray& display, const QByteArray& windowClass)
    : m_client(display), m_shown(xcb_generate_id(m_client.connection())) {
    xcb_create_window(m_client.connection(), XCB_COPY_FROM_PARENT, m_shown, m_client.root(), 40, 40,
                      320, 200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const QByteArray instanceAndClass = windowClass.toLower() + '\0' + windowClass + '\0';
    m_client.setProperty(m_shown, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, instanceAndClass);
    m_client.setProperty(m_shown, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, windowClass);
    // A window manager that has only just started may overlook a window.
    const auto shown = [this] {
        xcb_unmap_window(m_client.connection(), m_shown);
        xcb_map_window(m_client.connection(), m_shown);
        xcb_flush(m_client.connection());
        return eventually([this] { return isActive(); }, std::chrono::milliseconds(200));
    };
    if (!eventually(shown, std::chrono::seconds(10)))
        qFatal("the window manager did not make the window active");
}

bool FakeApplication::isActive() const {
    const auto active = m_client.property(m_client.root(), m_client.atom("_NET_ACTIVE_WINDOW"));
    return active.bytes == QByteArray(reinterpret_cast<const char*>(&m_shown), sizeof m_shown);
}

} // namespace quillet
