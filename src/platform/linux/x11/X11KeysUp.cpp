#include "platform/linux/x11/X11KeysUp.h"

#include <algorithm>

namespace quillet {

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 20ms;
constexpr int looksToBelieve = 300ms / interval;
constexpr int mostLooks = 10s / interval;

} // namespace

void X11KeysUp::then(Scheduler::Task task) {
    m_task = std::move(task);
    m_looks = m_looksWithNothingDown = 0;
    m_looking = m_scheduler.every(interval, 0ms, [this] { look(); });
}

void X11KeysUp::look() {
    m_looksWithNothingDown = isAnythingDown() ? 0 : m_looksWithNothingDown + 1;
    if (m_looksWithNothingDown <= looksToBelieve && ++m_looks < mostLooks)
        return;
    m_looking.reset();
    std::exchange(m_task, {})();
}

bool X11KeysUp::isAnythingDown() const {
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

} // namespace quillet
