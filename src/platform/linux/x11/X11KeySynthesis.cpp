#include "platform/linux/x11/X11KeySynthesis.h"

#include "platform/linux/x11/X11Panels.h"
#include "platform/linux/x11/XcbXkb.h"

#include <algorithm>
#include <map>
#include <QLoggingCategory>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillet {

Q_LOGGING_CATEGORY(logKeys, "quillet.keys", QtWarningMsg)

namespace {

using namespace Qt::StringLiterals;

constexpr Scheduler::Duration retryInterval{10};
constexpr int attempts = 50;

// Programs ask for the new map of the keyboard when they read of the change, and only then know
// what the key they were sent means.
constexpr Scheduler::Duration lending{1000};

struct ModifierFlag {
    uint64_t flag;
    xcb_keysym_t symbol;
};

constexpr ModifierFlag modifierFlags[] = {
    {1U << 17, XKB_KEY_Shift_L},
    {1U << 18, XKB_KEY_Control_L},
    {1U << 19, XKB_KEY_Alt_L},
    {1U << 20, XKB_KEY_Control_L},
};
constexpr uint64_t commandFlag = 1U << 20;
constexpr uint64_t shiftFlag = 1U << 17;

/// Classes of windows in which Control+Shift+V pastes.
const PreferenceKey<QStringList> terminals{u"paste.terminals"_s,
                                           {u"alacritty"_s,
                                            u"blackbox"_s,
                                            u"com.mitchellh.ghostty"_s,
                                            u"com.raggesilver.blackbox"_s,
                                            u"cool-retro-term"_s,
                                            u"deepin-terminal"_s,
                                            u"gnome-terminal"_s,
                                            u"gnome-terminal-server"_s,
                                            u"guake"_s,
                                            u"io.elementary.terminal"_s,
                                            u"kgx"_s,
                                            u"kitty"_s,
                                            u"konsole"_s,
                                            u"lxterminal"_s,
                                            u"mate-terminal"_s,
                                            u"org.gnome.console"_s,
                                            u"org.gnome.ptyxis"_s,
                                            u"org.wezfurlong.wezterm"_s,
                                            u"pantheon-terminal"_s,
                                            u"qterminal"_s,
                                            u"roxterm"_s,
                                            u"sakura"_s,
                                            u"st-256color"_s,
                                            u"terminator"_s,
                                            u"terminology"_s,
                                            u"termite"_s,
                                            u"tilda"_s,
                                            u"tilix"_s,
                                            u"uxterm"_s,
                                            u"xfce4-terminal"_s,
                                            u"xterm"_s,
                                            u"yakuake"_s}};

std::set<xcb_keycode_t> modifierKeys(const X11Keymap& keymap, uint64_t flags) {
    std::set<xcb_keycode_t> keys;
    for (const ModifierFlag& modifier : modifierFlags) {
        const auto key = keymap.keyWith({modifier.symbol});
        if ((flags & modifier.flag) && key)
            keys.insert(*key);
    }
    return keys;
}

} // namespace

X11KeySynthesis::X11KeySynthesis(X11Connection& connection, const X11Panels& panels,
                                 Preferences& preferences, Scheduler& scheduler)
    : m_connection(connection),
      m_panels(panels),
      m_preferences(preferences),
      m_scheduler(scheduler),
      m_hidden(connection.createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)) {
    preferences.registerDefault(terminals);
    xcb_connection_t* xcb = connection.xcb();
    const auto* test = xcb_get_extension_data(xcb, &xcb_test_id);
    m_hasTest = test && test->present;
    xcb_discard_reply(
        xcb, xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION).sequence);
}

X11KeySynthesis::~X11KeySynthesis() {
    takeBackKey();
}

void X11KeySynthesis::post(const std::vector<KeyEvent>& events, Completion completion) {
    if (!m_hasTest)
        return completion(false);
    m_panels.askForKeyboardBack();
    m_waiting.push_back({events, std::move(completion), attempts});
    settleWhatIsDue();
}

/// Sends what can be sent now and gives up what has waited too long; the rest is looked at again.
void X11KeySynthesis::settleWhatIsDue() {
    m_retry.reset();
    const bool isReady = isTargetReady();
    const bool isQuiet = isReady && !isModifierHeld();
    std::vector<Post> waiting;
    std::vector<std::pair<Completion, bool>> settled;
    for (Post& post : m_waiting) {
        const bool isLastAttempt = --post.attemptsLeft == 0;
        if (isQuiet || isLastAttempt)
            settled.emplace_back(std::move(post.completion), isReady && send(post.events));
        else
            waiting.push_back(std::move(post));
    }
    m_waiting = std::move(waiting);
    if (!m_waiting.empty())
        m_retry = m_scheduler.after(retryInterval, [this] { settleWhatIsDue(); });
    for (const auto& [completion, isPosted] : settled) {
        if (!isPosted)
            qCWarning(logKeys, "the application did not get the keyboard; keys were not posted");
        completion(isPosted);
    }
}

bool X11KeySynthesis::isTargetReady() const {
    if (!m_panels.isKeyboardBack())
        return false;
    const XcbOwned<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
        m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
    return focus && focus->focus != XCB_INPUT_FOCUS_NONE && !isKeyboardGrabbed();
}

/// Whether another program takes all keys for itself. A window that is not on the screen cannot
/// grab them, but the server first says whether somebody else does.
bool X11KeySynthesis::isKeyboardGrabbed() const {
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_grab_keyboard_reply_t> grab(
        xcb_grab_keyboard_reply(xcb,
                                xcb_grab_keyboard(xcb, 0, m_hidden, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    return grab && grab->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

/// Locks do not count unless their keys are down.
bool X11KeySynthesis::isModifierHeld() const {
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(xcb, xcb_xkb_get_state(xcb, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return state && state->baseMods != 0;
}

bool X11KeySynthesis::isTargetTerminal() const {
    const auto active = m_connection.values(
        m_connection.root(), m_connection.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 1);
    if (active.empty())
        return false;
    const QStringList known = m_preferences.value(terminals);
    const QList<QByteArray> names =
        m_connection.bytes(active.front(), XCB_ATOM_WM_CLASS).split('\0');
    return std::any_of(names.begin(), names.end(), [&known](const QByteArray& name) {
        return known.contains(QString::fromUtf8(name), Qt::CaseInsensitive);
    });
}

/// False, with nothing sent, where the keyboard lacks one of the keys.
bool X11KeySynthesis::send(const std::vector<KeyEvent>& events) {
    const auto keymap = X11Keymap::current(m_connection);
    if (!keymap)
        return false;
    const bool isTerminal = isTargetTerminal();
    std::map<uint16_t, xcb_keycode_t> keys;
    for (const KeyEvent& event : events) {
        if (keys.contains(event.keyCode))
            continue;
        const std::optional<xcb_keycode_t> key = keyFor(*keymap, event.keyCode);
        if (!key)
            return false;
        keys[event.keyCode] = *key;
    }
    const std::vector<xcb_keycode_t> held = heldModifiers(*keymap);
    for (const xcb_keycode_t key : held)
        fake(key, false);

    std::set<xcb_keycode_t> down;
    for (const KeyEvent& event : events) {
        const bool isCommand = event.flags & commandFlag;
        change(down,
               modifierKeys(*keymap, event.flags | (isTerminal && isCommand ? shiftFlag : 0)));
        fake(keys[event.keyCode], event.isDown);
    }
    change(down, {});

    for (const xcb_keycode_t key : held)
        fake(key, true);
    m_connection.flush();
    return true;
}

std::optional<xcb_keycode_t> X11KeySynthesis::keyFor(const X11Keymap& keymap, uint16_t keyCode) {
    const std::optional<KeyMeaning> meaning = keyMeaning(keyCode);
    std::optional<xcb_keycode_t> key;
    if (meaning)
        key = keymap.typingKey(meaning->keysym);
    if (key && key != m_lentKey)
        return key;
    if (meaning && !key) {
        takeBackKey();
        key = keymap.unusedKey();
    }
    if (key)
        lendKey(*key, meaning->keysym);
    else
        qCWarning(logKeys, "the keyboard has no key for the code %d", keyCode);
    return key;
}

std::vector<xcb_keycode_t> X11KeySynthesis::heldModifiers(const X11Keymap& keymap) const {
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(xcb, xcb_query_keymap(xcb), nullptr));
    std::vector<xcb_keycode_t> held = keymap.modifierKeys(keymap.locks());
    std::erase_if(held, [&](xcb_keycode_t key) {
        return !keys || !(keys->keys[key / 8] & (1U << (key % 8)));
    });
    return held;
}

/// Presses and releases modifiers so that `down` becomes `wanted`.
void X11KeySynthesis::change(std::set<xcb_keycode_t>& down, const std::set<xcb_keycode_t>& wanted) {
    for (const xcb_keycode_t key : down) {
        if (!wanted.contains(key))
            fake(key, false);
    }
    for (const xcb_keycode_t key : wanted) {
        if (!down.contains(key))
            fake(key, true);
    }
    down = wanted;
}

void X11KeySynthesis::fake(xcb_keycode_t key, bool isDown) {
    xcb_test_fake_input(m_connection.xcb(), isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key,
                        XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void X11KeySynthesis::lendKey(xcb_keycode_t key, xcb_keysym_t symbol) {
    // Plain and shifted, in both layouts that the core protocol knows; others repeat these.
    const xcb_keysym_t symbols[] = {symbol, symbol, symbol, symbol};
    xcb_change_keyboard_mapping(m_connection.xcb(), 1, key, std::size(symbols), symbols);
    m_lentKey = key;
    m_lentSymbol = symbol;
    m_takeBack = m_scheduler.after(lending, [this] { takeBackKey(); });
}

void X11KeySynthesis::takeBackKey() {
    m_takeBack.reset();
    if (!m_lentKey)
        return;
    const xcb_keycode_t key = *std::exchange(m_lentKey, std::nullopt);
    xcb_connection_t* xcb = m_connection.xcb();
    const XcbOwned<xcb_get_keyboard_mapping_reply_t> now(
        xcb_get_keyboard_mapping_reply(xcb, xcb_get_keyboard_mapping(xcb, key, 1), nullptr));
    // A change of the layout took it back already, perhaps for a symbol of its own.
    if (!now || *xcb_get_keyboard_mapping_keysyms(now.get()) != m_lentSymbol)
        return;
    const xcb_keysym_t nothing = XCB_NO_SYMBOL;
    xcb_change_keyboard_mapping(xcb, 1, key, 1, &nothing);
    m_connection.flush();
}

} // namespace quillet
