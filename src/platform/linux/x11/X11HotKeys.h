#pragma once

#include "platform/Alive.h"
#include "platform/HotKeyService.h"
#include "platform/linux/x11/X11Keymap.h"
#include "platform/linux/x11/X11Panels.h"
#include "platform/linux/x11/X11RawInput.h"
#include "platform/Scheduler.h"

#include <QAbstractNativeEventFilter>

namespace quillet {

/// Shortcuts as passive grabs of keys on the root, each with every combination of the lock
/// modifiers. When the keyboard's layout changes, the grabs move to where the symbols are then.
/// Command is the Super key. While a panel or menu of this program has the keyboard, grabs do not
/// work, so its keys are looked at, too.
///
/// The grabs are the toolkit's, as those of panels are: the grab of a key that was pressed is kept,
/// with all further keys waiting in the server from when the press is read, until the panel that it
/// opens takes it over, so that nothing typed meanwhile goes elsewhere. Outlives its registrations.
class X11HotKeys : public HotKeyService, private QAbstractNativeEventFilter {
public:
    X11HotKeys(X11Connection& connection, X11RawInput& rawInput, const X11Panels& panels,
               Scheduler& scheduler);
    ~X11HotKeys() override;

    /// Whether the server tells enough about the keyboard.
    bool isAvailable() const { return m_keymap != nullptr; }

    std::unique_ptr<Registration> add(uint32_t keyCode, uint32_t modifiers, uint32_t id) override;
    char32_t symbol(uint32_t scanCode) const override;

private:
    struct Grab {
        xcb_keycode_t key = 0;
        uint16_t modifiers = 0;
        bool operator==(const Grab&) const = default;
    };
    class Entry;

    std::vector<Grab> grabsFor(uint32_t keyCode, uint32_t modifiers) const;
    bool grab(const std::vector<Grab>& wanted);
    void ungrab(const std::vector<Grab>& grabs);
    bool isHeld(const Grab& grab) const;
    void loadKeymap();
    void followKeymap();
    void remove(Entry& entry);

    void handle(const xcb_generic_event_t& event);
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    bool takeKey(const xcb_generic_event_t& event);
    bool pressed(const xcb_key_press_event_t& event);
    bool isRepeat(const xcb_key_press_event_t& event);
    std::vector<uint32_t> idsOf(const xcb_key_press_event_t& event) const;
    void keyIsDown(xcb_keycode_t key);
    void holdKeyboard(xcb_timestamp_t time);
    void letKeyboardGo(xcb_timestamp_t time);

    X11Connection& m_connection;
    X11RawInput& m_rawInput;
    const X11Panels& m_panels;
    Scheduler& m_scheduler;
    xcb_connection_t* m_xcb; ///< has the grabs
    uint8_t m_xkbEvent = 0;
    std::unique_ptr<X11Keymap> m_keymap; ///< null without the keyboard extension
    std::vector<Entry*> m_entries;
    std::optional<xcb_keycode_t> m_keyDown;      ///< the key of the shortcut that came last
    std::optional<xcb_timestamp_t> m_releasedAt; ///< for good or between two repeats
    std::optional<xcb_timestamp_t> m_upAt;       ///< for good
    X11RawInput::Watch m_release;                ///< tells of that also when others get the key
    std::unique_ptr<Timer> m_holdEnd;
    std::unique_ptr<Timer> m_keymapChange;
    X11Connection::Listening m_listening;
    Alive m_alive;
};

} // namespace quillet
