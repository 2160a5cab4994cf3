#include "platform/linux/x11/X11DisplayPower.h"

#include <algorithm>
#include <xcb/dpms.h>
#include <xcb/screensaver.h>

namespace quillet {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// A release that comes in pieces, or a pointer that still rolls, would wake the display.
constexpr auto lookInterval = 20ms;
constexpr int quietLooks = 300ms / lookInterval;
constexpr int mostLooks = 10s / lookInterval; // somebody may have put a book on the keyboard

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
      m_scheduler(scheduler),
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
    m_looks = m_quietLooks = 0;
    m_waiting = m_scheduler.every(lookInterval, 0ms, [this] { lookAtKeys(); });
}

void X11DisplayPower::lookAtKeys() {
    m_quietLooks = isAnythingDown() ? 0 : m_quietLooks + 1;
    if (m_quietLooks <= quietLooks && ++m_looks < mostLooks)
        return;
    m_waiting.reset();
    turnOff();
}

bool X11DisplayPower::isAnythingDown() const {
    constexpr uint16_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3 |
                                 XCB_BUTTON_MASK_4 | XCB_BUTTON_MASK_5;
    xcb_connection_t* xcb = m_connection.xcb();
    const auto keysAsked = xcb_query_keymap(xcb);
    const auto pointerAsked = xcb_query_pointer(xcb, m_connection.root());
    const XcbOwned<xcb_query_keymap_reply_t> keys(xcb_query_keymap_reply(xcb, keysAsked, nullptr));
    const XcbOwned<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(xcb, pointerAsked, nullptr));
    return (pointer && (pointer->mask & buttons)) ||
           (keys && std::any_of(std::begin(keys->keys), std::end(keys->keys),
                                [](uint8_t eight) { return eight != 0; }));
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
