#include "platform/linux/x11/X11KeyboardGrab.h"

#include "platform/linux/x11/X11Panels.h"
#include "platform/linux/x11/XcbXkb.h"

#include <algorithm>
#include <xcb/xinput.h>

namespace quillet {

namespace {

using namespace std::chrono_literals;

constexpr auto keysUpInterval = 20ms;
constexpr int keysUpLooks = 150; // somebody may have put a book on the keyboard

} // namespace

class X11KeyboardGrab::X11Hold : public Hold {
public:
    explicit X11Hold(X11KeyboardGrab& grab) : m_grab(grab) {}
    ~X11Hold() override { m_grab.letGo(); }

private:
    X11KeyboardGrab& m_grab;
};

X11KeyboardGrab::X11KeyboardGrab(X11Connection& connection, X11Panels& panels, Scheduler& scheduler)
    : m_connection(connection), m_panels(panels), m_scheduler(scheduler) {
    xcb_connection_t* xcb = connection.xcb();
    const auto* input = xcb_get_extension_data(xcb, &xcb_input_id);
    const auto* keyboard = xcb_get_extension_data(xcb, &xcb_xkb_id);
    m_isAvailable = input && input->present && keyboard && keyboard->present;
    if (!m_isAvailable)
        return;
    xcb_discard_reply(xcb, xcb_input_xi_query_version(xcb, 2, 2).sequence);
    xcb_discard_reply(
        xcb, xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION).sequence);
}

X11KeyboardGrab::~X11KeyboardGrab() {
    if (!m_held.empty())
        release();
}

std::unique_ptr<KeyboardGrab::Hold> X11KeyboardGrab::hold() {
    if (!m_isAvailable)
        return nullptr;
    if (m_keysUp) { // the last hold has ended, but not its grabs
        m_keysUp.reset();
        return std::make_unique<X11Hold>(*this);
    }
    if (!m_held.empty())
        return nullptr;
    m_panels.resignKey();
    m_locks = locks();
    return grabAll() ? std::make_unique<X11Hold>(*this) : nullptr;
}

std::vector<uint16_t> X11KeyboardGrab::keyboards() const {
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_input_xi_query_device_reply_t> devices(xcb_input_xi_query_device_reply(
        xcb, xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL_MASTER), nullptr));
    std::vector<uint16_t> keyboards;
    if (!devices)
        return keyboards;
    for (auto it = xcb_input_xi_query_device_infos_iterator(devices.get()); it.rem > 0;
         xcb_input_xi_device_info_next(&it)) {
        if (it.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD)
            keyboards.push_back(it.data->deviceid);
    }
    return keyboards;
}

/// All keyboards or none.
bool X11KeyboardGrab::grabAll() {
    xcb_connection_t* xcb = m_connection.xcb();
    const std::vector<uint16_t> wanted = keyboards();
    for (const uint16_t keyboard : wanted) {
        const XcbOwned<xcb_input_xi_grab_device_reply_t> grab(xcb_input_xi_grab_device_reply(
            xcb,
            xcb_input_xi_grab_device(xcb, m_connection.root(), XCB_CURRENT_TIME, XCB_CURSOR_NONE,
                                     keyboard, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                     XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, 0,
                                     nullptr),
            nullptr));
        if (!grab || grab->status != XCB_GRAB_STATUS_SUCCESS) {
            ungrabAll();
            return false;
        }
        m_held.push_back(keyboard);
    }
    return !m_held.empty();
}

void X11KeyboardGrab::ungrabAll() {
    for (const uint16_t keyboard : std::exchange(m_held, {}))
        xcb_input_xi_ungrab_device(m_connection.xcb(), XCB_CURRENT_TIME, keyboard);
    m_connection.flush();
}

X11KeyboardGrab::Locks X11KeyboardGrab::locks() const {
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(xcb, xcb_xkb_get_state(xcb, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return state ? Locks{state->lockedMods, state->lockedGroup} : Locks{};
}

void X11KeyboardGrab::restoreLocks() {
    xcb_xkb_latch_lock_state(m_connection.xcb(), XCB_XKB_ID_USE_CORE_KBD, 0xff, m_locks.modifiers,
                             1, m_locks.group, 0xff, 0, 0);
}

bool X11KeyboardGrab::isAnyKeyDown() const {
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(xcb, xcb_query_keymap(xcb), nullptr));
    return keys && std::any_of(std::begin(keys->keys), std::end(keys->keys),
                               [](uint8_t eight) { return eight != 0; });
}

/// A key that is down would repeat in the active application, which would also get its release.
void X11KeyboardGrab::letGo() {
    if (!isAnyKeyDown())
        return release();
    m_looksLeft = keysUpLooks;
    m_keysUp = m_scheduler.every(keysUpInterval, 0ms, [this] {
        if (!isAnyKeyDown() || --m_looksLeft == 0)
            release();
    });
}

void X11KeyboardGrab::release() {
    m_keysUp.reset();
    restoreLocks();
    ungrabAll();
}

} // namespace quillet
