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

// By then the server has answered, and nobody has to wait for it.
constexpr Scheduler::Duration keysAreTold{50};

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

X11HotKeys::X11HotKeys(X11Connection& connection, X11RawInput& rawInput, Scheduler& scheduler)
    : m_connection(connection), m_rawInput(rawInput), m_scheduler(scheduler) {
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
    xcb_connection_t* xcb = m_connection.xcb();
    std::vector<xcb_void_cookie_t> asked;
    for (const Grab& grab : wanted)
        asked.push_back(xcb_grab_key_checked(xcb, 1, m_connection.root(), grab.modifiers, grab.key,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    bool all = true;
    for (const xcb_void_cookie_t cookie : asked) {
        const XcbOwned<xcb_generic_error_t> error(xcb_request_check(xcb, cookie));
        all = all && !error;
    }
    if (!all)
        ungrab(wanted);
    return all;
}

void X11HotKeys::ungrab(const std::vector<Grab>& grabs) {
    for (const Grab& grab : grabs) {
        if (!isHeld(grab))
            xcb_ungrab_key(m_connection.xcb(), grab.key, m_connection.root(), grab.modifiers);
    }
    m_connection.flush();
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
    const uint8_t type = event.response_type & 0x7f;
    if (type == XCB_KEY_PRESS) {
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        // The grab would last until the key is up, and nobody else could take the keyboard.
        xcb_ungrab_keyboard(m_connection.xcb(), key.time);
        m_connection.flush();
        pressed(key);
    } else if (type == XCB_KEY_RELEASE) {
        // A key that repeated has brought the grab back, and no raw event tells of its release.
        const auto& key = reinterpret_cast<const xcb_key_release_event_t&>(event);
        if (m_keyDown == key.detail)
            m_releasedAt = key.time;
    }
    const bool isKeymapChange = type == XCB_MAPPING_NOTIFY ||
                                (type == m_xkbEvent && (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY ||
                                                        event.pad0 == XCB_XKB_MAP_NOTIFY));
    if (isKeymapChange)
        m_keymapChange = m_scheduler.after(keymapSettles, [this] { followKeymap(); });
}

bool X11HotKeys::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    return (event.response_type & 0x7f) == XCB_KEY_PRESS &&
           pressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
}

/// Whether the key belongs to a shortcut.
bool X11HotKeys::pressed(const xcb_key_press_event_t& event) {
    const Grab pressed{event.detail, static_cast<uint16_t>(event.state & 0xff)};
    std::vector<uint32_t> ids;
    for (const Entry* entry : m_entries) {
        if (std::find(entry->grabs.begin(), entry->grabs.end(), pressed) != entry->grabs.end())
            ids.push_back(entry->id);
    }
    checkKeyDown();
    if (m_keyDown == event.detail) {
        const auto releasedAt = std::exchange(m_releasedAt, std::nullopt);
        if (!releasedAt || releasedAt == event.time)
            return true; // also when its modifiers were let go first: it is not meant to be typed
        keyIsUp();
    }
    if (ids.empty())
        return false;
    for (const uint32_t id : ids)
        report(id);
    m_keyDown = event.detail;
    m_release = m_rawInput.watch(X11RawInput::Kind::keyRelease, [this](uint32_t key) {
        if (m_keyDown == key)
            keyIsUp();
    });
    if (!m_release) {
        m_keyDown.reset();
        return true;
    }
    // It may have come up before the watch began. What the shortcut opens need not wait for that.
    m_keysAsked = xcb_query_keymap(m_connection.xcb());
    m_connection.flush();
    m_keyCheck = m_scheduler.after(keysAreTold, [this] { checkKeyDown(); });
    return true;
}

void X11HotKeys::checkKeyDown() {
    m_keyCheck.reset();
    const auto asked = std::exchange(m_keysAsked, std::nullopt);
    if (!asked)
        return;
    const XcbOwned<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(m_connection.xcb(), *asked, nullptr));
    const bool isDown =
        keys && m_keyDown && (keys->keys[*m_keyDown / 8] & (1U << (*m_keyDown % 8)));
    if (!isDown)
        keyIsUp();
}

void X11HotKeys::keyIsUp() {
    m_keyDown.reset();
    m_release.reset();
    m_releasedAt.reset();
}

void X11HotKeys::report(uint32_t id) {
    QMetaObject::invokeMethod(&m_connection, m_alive([this, id] {
        if (onPressed)
            onPressed(id);
    }),
                              Qt::QueuedConnection);
}

} // namespace quillet
