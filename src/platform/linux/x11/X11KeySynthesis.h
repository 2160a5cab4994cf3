#pragma once

#include "platform/KeySynthesis.h"
#include "platform/linux/x11/X11Keymap.h"
#include "platform/Preferences.h"
#include "platform/Scheduler.h"

#include <set>

namespace quillet {

class X11Panels;

/// Keys through the XTest extension, all of a post in one flush. Command is Control, with Shift in
/// terminals, where Control alone belongs to the programs inside. A symbol that the layout in use
/// cannot type is lent an unused key for a moment.
class X11KeySynthesis : public KeySynthesis {
public:
    X11KeySynthesis(X11Connection& connection, const X11Panels& panels, Preferences& preferences,
                    Scheduler& scheduler);
    ~X11KeySynthesis() override;

    void post(const std::vector<KeyEvent>& events, Completion completion) override;

private:
    struct Post {
        std::vector<KeyEvent> events;
        Completion completion;
        int attemptsLeft = 0;
    };

    void settleWhatIsDue();
    bool isTargetReady() const;
    bool isKeyboardGrabbed() const;
    bool isModifierHeld() const;
    bool isTargetTerminal() const;
    bool send(const std::vector<KeyEvent>& events);
    std::optional<xcb_keycode_t> keyFor(const X11Keymap& keymap, uint16_t keyCode);
    std::vector<xcb_keycode_t> heldModifiers(const X11Keymap& keymap) const;
    void change(std::set<xcb_keycode_t>& down, const std::set<xcb_keycode_t>& wanted);
    void fake(xcb_keycode_t key, bool isDown);
    void lendKey(xcb_keycode_t key, xcb_keysym_t symbol);
    void takeBackKey();

    X11Connection& m_connection;
    const X11Panels& m_panels;
    const Preferences& m_preferences;
    Scheduler& m_scheduler;
    bool m_hasTest;
    xcb_window_t m_hidden;
    std::vector<Post> m_waiting;
    std::unique_ptr<Timer> m_retry;
    std::optional<xcb_keycode_t> m_lentKey;
    xcb_keysym_t m_lentSymbol = 0;
    std::unique_ptr<Timer> m_takeBack;
};

} // namespace quillet
