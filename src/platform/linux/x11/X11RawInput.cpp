#include "platform/linux/x11/X11RawInput.h"

#include <xcb/xinput.h>

namespace quillet {

X11RawInput::X11RawInput(X11Connection& connection) : m_connection(connection) {
    const auto* extension = xcb_get_extension_data(connection.xcb(), &xcb_input_id);
    if (!extension || !extension->present)
        return;
    // Since 2.1 raw events come whatever is grabbed.
    const XcbOwned<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection.xcb(), xcb_input_xi_query_version(connection.xcb(), 2, 2), nullptr));
    if (!version || version->major_version < 2)
        return;
    m_opcode = extension->major_opcode;
    m_listening = connection.listen([this](const xcb_generic_event_t& event) { handle(event); });
}

X11RawInput::Watch X11RawInput::watch(Kind kind, Watcher watcher) {
    if (m_opcode == 0)
        return nullptr;
    const std::shared_ptr<Entry> entry(new Entry{kind, std::move(watcher)}, [this](Entry* ended) {
        delete ended;
        select();
    });
    m_entries.push_back(entry);
    select();
    return entry;
}

void X11RawInput::select() {
    std::erase_if(m_entries, [](const auto& entry) { return entry.expired(); });
    struct {
        xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        uint32_t mask = 0;
    } selection;
    for (const auto& weak : m_entries) {
        const auto entry = weak.lock();
        if (!entry)
            continue;
        selection.mask |= entry->kind == Kind::buttonPress
                              ? XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS
                              : XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
    }
    xcb_input_xi_select_events(m_connection.xcb(), m_connection.root(), 1, &selection.head);
    m_connection.flush();
}

void X11RawInput::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
        return;
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (raw.extension != m_opcode)
        return;
    const bool isButton = raw.event_type == XCB_INPUT_RAW_BUTTON_PRESS;
    if (!isButton && raw.event_type != XCB_INPUT_RAW_KEY_RELEASE)
        return;
    const auto entries = m_entries; // a watcher may end watches
    for (const auto& weak : entries) {
        const auto entry = weak.lock();
        if (entry && (entry->kind == Kind::buttonPress) == isButton)
            entry->watcher(raw.detail, raw.time);
    }
}

} // namespace quillet
