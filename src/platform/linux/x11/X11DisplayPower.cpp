#include "platform/linux/x11/X11DisplayPower.h"

#include <xcb/dpms.h>
#include <xcb/screensaver.h>

namespace quillet {

namespace {

using namespace Qt::StringLiterals;

bool canSuspendScreenSaver(const X11Connection& connection) {
    xcb_connection_t* xcb = connection.xcb();
    const auto* extension = xcb_get_extension_data(xcb, &xcb_screensaver_id);
    if (!extension || !extension->present)
        return false;
    const XcbOwned<xcb_screensaver_query_version_reply_t> version(
        xcb_screensaver_query_version_reply(xcb, xcb_screensaver_query_version(xcb, 1, 1),
                                            nullptr));
    return version && version->server_minor_version >= 1;
}

bool canTurnDisplayOff(const X11Connection& connection) {
    xcb_connection_t* xcb = connection.xcb();
    const auto* extension = xcb_get_extension_data(xcb, &xcb_dpms_id);
    if (!extension || !extension->present)
        return false;
    const XcbOwned<xcb_dpms_capable_reply_t> reply(
        xcb_dpms_capable_reply(xcb, xcb_dpms_capable(xcb), nullptr));
    return reply && reply->capable;
}

} // namespace

X11DisplayPower::X11DisplayPower(X11Connection& connection, Scheduler& scheduler)
    : m_connection(connection),
      m_keysUp(connection, scheduler),
      m_canSuspend(canSuspendScreenSaver(connection)) {
    if (!canTurnDisplayOff(connection))
        m_whyNoSleep = u"The X server cannot turn the display off."_s;
}

X11DisplayPower::Suspension X11DisplayPower::suspend() {
    if (!m_canSuspend)
        return nullptr;
    const auto count = [&connection = m_connection](uint32_t change) {
        xcb_screensaver_suspend(connection.xcb(), change);
        connection.flush();
    };
    count(1);
    return {static_cast<void*>(this), [count](void*) { count(0); }};
}

void X11DisplayPower::sleep() {
    m_keysUp.then([this] { turnOff(); });
}

void X11DisplayPower::turnOff() {
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_dpms_info_reply_t> info(
        xcb_dpms_info_reply(xcb, xcb_dpms_info(xcb), nullptr));
    if (info && !info->state) {
        // Whoever has switched this off wants no display that sleeps by itself.
        xcb_dpms_set_timeouts(xcb, 0, 0, 0);
        xcb_dpms_enable(xcb);
    }
    xcb_dpms_force_level(xcb, XCB_DPMS_DPMS_MODE_OFF);
    m_connection.flush();
}

} // namespace quillet
