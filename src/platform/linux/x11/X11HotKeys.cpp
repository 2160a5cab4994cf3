#include "platform/linux/x11/X11HotKeys.h"

#include "platform/linux/x11/XcbXkb.h"

#include <algorithm>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillet {

Q_LOGGING_CATEGORY(logHotKeys, "quillet.hotkeys", QtWarningMsg)

namespace {

// A change of the layout comes as a burst of events.
constexpr Scheduler::Duration keymapSettles{50};

// Whoever is told of a shortcut acts in the turn of the event loop that follows.
constexpr Scheduler::Duration actionHasRun{0};

} // namespace

class X11HotKeys::Entry : public Registration {
public:
    Entry(X11HotKeys& service, uint32_t code, uint32_t mask, uint32_t reported)
        : keyCode(code), modifiers(mask), id(reported), m_service(service) {}
    ~Entry() override { m_service.remove(*this); }

    bool isInForce() const override { return !grabs.empty(); }

    const uint32_t keyCode;
    const uint32_t modifiers;
    const uint32_t id;
    std::vector<Grab> grabs; ///< empty where the present layout allows none

private:
    X11HotKeys& m_service;
};

X11HotKeys::X11HotKeys(X11Connection& connection, X11RawInput& rawInput, const X11Panels& panels,
                       Scheduler& scheduler)
    : m_connection(connection),
      m_rawInput(rawInput),
      m_panels(panels),
      m_scheduler(scheduler),
      m_xcb(X11Connection::toolkit() ? X11Connection::toolkit() : connection.xcb()) {
    loadKeymap();
    if (!m_keymap)
        return;
    xcb_connection_t* xcb = connection.xcb();
    m_xkbEvent = xcb_get_extension_data(xcb, &xcb_xkb_id)->first_event;
    constexpr auto changes = static_cast<uint16_t>(XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                                   XCB_XKB_EVENT_TYPE_MAP_NOTIFY);
    constexpr auto parts = static_cast<uint16_t>(
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP);
    xcb_xkb_select_events(xcb, XCB_XKB_ID_USE_CORE_KBD, changes, 0, changes, parts, parts, nullptr);
    qGuiApp->installNativeEventFilter(this);
    m_listening = connection.listen([this](const xcb_generic_event_t& event) { handle(event); });
}

X11HotKeys::~X11HotKeys() {
    qGuiApp->removeNativeEventFilter(this);
}

std::unique_ptr<HotKeyService::Registration> X11HotKeys::add(uint32_t keyCode, uint32_t modifiers,
                                                             uint32_t id) {
    std::vector<Grab> grabs = grabsFor(keyCode, modifiers);
    if (grabs.empty() || !grab(grabs))
        return nullptr;
    auto entry = std::make_unique<Entry>(*this, keyCode, modifiers, id);
    entry->grabs = std::move(grabs);
    m_entries.push_back(entry.get());
    return entry;
}

char32_t X11HotKeys::symbol(uint32_t scanCode) const {
    return m_keymap ? m_keymap->shortcutSymbol(scanCode) : 0;
}

std::vector<X11HotKeys::Grab> X11HotKeys::grabsFor(uint32_t keyCode, uint32_t modifiers) const {
    const std::optional<KeyMeaning> meaning = keyMeaning(keyCode);
    if (!m_keymap || !meaning)
        return {};
    const std::pair<uint32_t, uint16_t> masks[] = {
        {0x100, m_keymap->modifiersOf({XKB_KEY_Super_L, XKB_KEY_Super_R})},
        {0x200, XCB_MOD_MASK_SHIFT},
        {0x800, m_keymap->modifiersOf({XKB_KEY_Alt_L, XKB_KEY_Alt_R})},
        {0x1000, XCB_MOD_MASK_CONTROL},
    };
    uint16_t mask = 0;
    for (const auto& [modifier, real] : masks) {
        if (!(modifiers & modifier))
            continue;
        if (real == 0)
            return {};
        mask |= real;
    }
    // Every subset of the locks, as the server takes each combination for another.
    const uint16_t locks = m_keymap->locks();
    std::vector<Grab> grabs;
    for (const xcb_keycode_t key : m_keymap->shortcutKeys(*meaning)) {
        unsigned subset = locks;
        do {
            subset = (subset - 1) & locks;
            grabs.push_back({key, static_cast<uint16_t>(mask | subset)});
        } while (subset != locks);
    }
    return grabs;
}

bool X11HotKeys::grab(const std::vector<Grab>& wanted) {
    std::vector<xcb_void_cookie_t> asked;
    for (const Grab& grab : wanted)
        asked.push_back(xcb_grab_key_checked(m_xcb, 0, m_connection.root(), grab.modifiers,
                                             grab.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    bool all = true;
    for (const xcb_void_cookie_t cookie : asked) {
        const XcbOwned<xcb_generic_error_t> error(xcb_request_check(m_xcb, cookie));
        all = all && !error;
    }
    if (!all)
        ungrab(wanted);
    return all;
}

void X11HotKeys::ungrab(const std::vector<Grab>& grabs) {
    for (const Grab& grab : grabs) {
        if (!isHeld(grab))
            xcb_ungrab_key(m_xcb, grab.key, m_connection.root(), grab.modifiers);
    }
    xcb_flush(m_xcb);
}

/// Whether a registration stands on it.
bool X11HotKeys::isHeld(const Grab& grab) const {
    return std::any_of(m_entries.begin(), m_entries.end(), [&](const Entry* entry) {
        return std::find(entry->grabs.begin(), entry->grabs.end(), grab) != entry->grabs.end();
    });
}

void X11HotKeys::loadKeymap() {
    if (auto keymap = X11Keymap::current(m_connection))
        m_keymap = std::move(keymap);
}

/// Moves the grabs that the new keymap puts elsewhere. Most changes move none: the server also
/// tells of a change when another keyboard of the same layout is used.
void X11HotKeys::followKeymap() {
    loadKeymap();
    std::vector<Entry*> moving;
    for (Entry* entry : m_entries) {
        if (grabsFor(entry->keyCode, entry->modifiers) != entry->grabs)
            moving.push_back(entry);
    }
    for (Entry* entry : moving)
        ungrab(std::exchange(entry->grabs, {}));
    for (Entry* entry : moving) {
        std::vector<Grab> grabs = grabsFor(entry->keyCode, entry->modifiers);
        if (!grabs.empty() && grab(grabs))
            entry->grabs = std::move(grabs);
        else
            qCWarning(logHotKeys, "shortcut %u is not free on the new keyboard layout", entry->id);
    }
    if (onKeyboardChanged)
        onKeyboardChanged();
}

void X11HotKeys::remove(Entry& entry) {
    std::erase(m_entries, &entry);
    ungrab(entry.grabs);
}

void X11HotKeys::handle(const xcb_generic_event_t& event) {
    takeKey(event);
    const uint8_t type = event.response_type & 0x7f;
    const bool isKeymapChange = type == XCB_MAPPING_NOTIFY ||
                                (type == m_xkbEvent && (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY ||
                                                        event.pad0 == XCB_XKB_MAP_NOTIFY));
    if (isKeymapChange)
        m_keymapChange = m_scheduler.after(keymapSettles, [this] { followKeymap(); });
}

bool X11HotKeys::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    return type == "xcb_generic_event_t" && takeKey(*static_cast<xcb_generic_event_t*>(message));
}

/// Whether it is the press of a shortcut's key.
bool X11HotKeys::takeKey(const xcb_generic_event_t& event) {
    const uint8_t type = event.response_type & 0x7f;
    if (type == XCB_KEY_PRESS)
        return pressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
    if (type == XCB_KEY_RELEASE) {
        const auto& key = reinterpret_cast<const xcb_key_release_event_t&>(event);
        if (m_keyDown == key.detail)
            m_releasedAt = key.time;
    }
    return false;
}

bool X11HotKeys::pressed(const xcb_key_press_event_t& event) {
    const bool isGrabbed = event.event == m_connection.root();
    const bool repeats = isRepeat(event);
    const std::vector<uint32_t> ids = repeats ? std::vector<uint32_t>() : idsOf(event);
    if (ids.empty()) {
        if (isGrabbed)
            letKeyboardGo(event.time);
        return repeats;
    }
    keyIsDown(event.detail);
    if (isGrabbed)
        holdKeyboard(event.time);
    const auto report = [this, ids, isGrabbed, time = event.time] {
        for (const uint32_t id : ids) {
            if (onPressed)
                onPressed(id);
        }
        if (isGrabbed)
            m_holdEnd = m_scheduler.after(actionHasRun, [this, time] {
                if (!m_panels.isTakingKeyboard())
                    letKeyboardGo(time);
            });
    };
    QMetaObject::invokeMethod(&m_connection, m_alive(report), Qt::QueuedConnection);
    return true;
}

/// Of a shortcut's key, also when its modifiers were let go first: it is not meant to be typed. A
/// key that repeats comes up and goes down in one moment. Repeats may still be on their way when
/// the raw event has told that it came up.
bool X11HotKeys::isRepeat(const xcb_key_press_event_t& event) {
    if (m_keyDown != event.detail)
        return false;
    const auto releasedAt = std::exchange(m_releasedAt, std::nullopt);
    const bool isUp = m_upAt && static_cast<int32_t>(event.time - *m_upAt) > 0;
    return !isUp && (!releasedAt || releasedAt == event.time);
}

std::vector<uint32_t> X11HotKeys::idsOf(const xcb_key_press_event_t& event) const {
    const Grab pressed{event.detail, static_cast<uint16_t>(event.state & 0xff)};
    std::vector<uint32_t> ids;
    for (const Entry* entry : m_entries) {
        if (std::find(entry->grabs.begin(), entry->grabs.end(), pressed) != entry->grabs.end())
            ids.push_back(entry->id);
    }
    return ids;
}

void X11HotKeys::keyIsDown(xcb_keycode_t key) {
    m_releasedAt.reset();
    m_upAt.reset();
    m_release = m_rawInput.watch(X11RawInput::Kind::keyRelease,
                                 [this](uint32_t released, xcb_timestamp_t time) {
                                     if (m_keyDown != released)
                                         return;
                                     m_upAt = time;
                                     m_release.reset();
                                 });
    m_keyDown = m_release ? std::optional(key) : std::nullopt;
}

/// Keeps the grab of the key that was pressed, which would end with the key.
void X11HotKeys::holdKeyboard(xcb_timestamp_t time) {
    const auto asked = xcb_grab_keyboard(m_xcb, 0, m_connection.root(), time, XCB_GRAB_MODE_ASYNC,
                                         XCB_GRAB_MODE_SYNC);
    xcb_discard_reply(m_xcb, asked.sequence);
    xcb_flush(m_xcb);
}

/// Without effect on grabs that are later than `time`.
void X11HotKeys::letKeyboardGo(xcb_timestamp_t time) {
    xcb_ungrab_keyboard(m_xcb, time);
    xcb_flush(m_xcb);
}

} // namespace quillet
