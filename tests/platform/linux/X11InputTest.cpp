#include "contracts/HotKeysContract.h"
#include "platform/linux/InputDesktop.h"
#include "platform/linux/x11/XcbXkb.h"
#include "support/XClient.h"

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr uint32_t keyV = 9;
constexpr uint32_t commandShift = 0x300;

struct X11HotKeysBackend {
    LinuxScheduler scheduler;
    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11RawInput rawInput{*connection};
    X11HotKeys x11{*connection, rawInput, scheduler};
    XClient other{qgetenv("DISPLAY")};

    HotKeyService& hotKeys() { return x11; }

    void takeElsewhere(uint32_t keyCode, uint32_t) {
        xcb_grab_key(other.connection(), 1, other.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT,
                     keyMeaning(keyCode)->position, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        other.serverTime();
    }

    void changeLayout(bool isFirst) {
        run(isFirst ? u"setxkbmap us"_s : u"setxkbmap dvorak"_s);
        spinFor(std::chrono::milliseconds(300));
    }

    static void press(uint32_t keyCode, uint32_t modifiers) {
        const QString shift = modifiers & 0x200 ? u"shift+"_s : QString();
        run(u"xdotool key super+%1%2"_s.arg(shift).arg(keyMeaning(keyCode)->position));
        spinFor(std::chrono::milliseconds(100));
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, HotKeysContract, X11HotKeysBackend);

class X11Input : public InputDesktop {
protected:
    ~X11Input() override { run(u"setxkbmap us"_s); }

    size_t pressesOf(const QString& xdotool) {
        pressed.clear();
        run(u"xdotool "_s + xdotool);
        spinUntil([this] { return !pressed.empty(); }, std::chrono::milliseconds(300));
        spinFor(std::chrono::milliseconds(30)); // for one too many
        return pressed.size();
    }
};

TEST_F(X11Input, aShortcutFiresOncePerPressWithAnyLockOnAndHoweverLongItIsHeld) {
    const auto shelf = hotKeys.add(keyV, commandShift, 1);
    ASSERT_TRUE(shelf);
    for (const QString& lock : {u"Num_Lock"_s, u"Caps_Lock"_s}) {
        EXPECT_EQ(pressesOf(u"key super+shift+v"_s), 1U);
        run(u"xdotool key "_s + lock);
        EXPECT_EQ(pressesOf(u"key super+shift+v"_s), 1U) << lock.toStdString();
        run(u"xdotool key "_s + lock);
    }
    EXPECT_EQ(pressesOf(u"key super+v"_s), 0U);

    run(u"xset r rate 100 50"_s);
    pressed.clear();
    run(u"xdotool keydown super keydown shift keydown v"_s);
    spinFor(std::chrono::milliseconds(400));
    EXPECT_EQ(pressed, std::vector<uint32_t>{1});
    XClient panel(qgetenv("DISPLAY")); // may have the keyboard before the key is up
    const auto asked = xcb_grab_keyboard(panel.connection(), 0, panel.root(), XCB_CURRENT_TIME,
                                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const XcbOwned<xcb_grab_keyboard_reply_t> grab(
        xcb_grab_keyboard_reply(panel.connection(), asked, nullptr));
    EXPECT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    xcb_ungrab_keyboard(panel.connection(), XCB_CURRENT_TIME);
    panel.serverTime();
    run(u"xdotool keyup v keyup shift keyup super"_s);
    EXPECT_EQ(pressesOf(u"key super+shift+v"_s), 1U);
    run(u"xset r rate"_s);
}

TEST_F(X11Input, aCombinationOfAnotherProgramIsRefusedWholeUntilItIsLetGo) {
    XClient other(qgetenv("DISPLAY"));
    const xcb_keycode_t v = 55;
    const auto grab = [&](uint16_t modifiers) {
        const auto cookie = xcb_grab_key_checked(other.connection(), 1, other.root(), modifiers, v,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const XClient::Event error(
            reinterpret_cast<xcb_generic_event_t*>(xcb_request_check(other.connection(), cookie)));
        return !error;
    };
    const uint16_t superShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;
    ASSERT_TRUE(grab(superShift | XCB_MOD_MASK_2)); // with NumLock alone
    EXPECT_FALSE(hotKeys.add(keyV, commandShift, 1));
    EXPECT_TRUE(spinUntil([&] { return grab(superShift); })) << "nothing of it stays taken";

    xcb_ungrab_key(other.connection(), v, other.root(), XCB_MOD_MASK_ANY);
    other.serverTime();
    auto shelf = hotKeys.add(keyV, commandShift, 1);
    EXPECT_TRUE(shelf);
    EXPECT_FALSE(grab(superShift));
    shelf.reset();
    connection->flush();
    EXPECT_TRUE(spinUntil([&] { return grab(superShift); }));
}

TEST_F(X11Input, aShortcutFollowsItsSymbolToAnotherLayout) {
    const auto shelf = hotKeys.add(keyV, commandShift, 1);
    const auto fires = [&](const QString& key) {
        return spinUntil([&] { return pressesOf(u"key super+shift+"_s + key) == 1; },
                         std::chrono::seconds(2));
    };
    run(u"setxkbmap dvorak"_s);
    EXPECT_TRUE(fires(u"60"_s));
    EXPECT_EQ(pressesOf(u"key super+shift+55"_s), 0U);
    run(u"setxkbmap de"_s);
    EXPECT_TRUE(fires(u"55"_s));
    run(u"setxkbmap ru,us"_s);
    EXPECT_TRUE(fires(u"55"_s));
    run(u"setxkbmap ru"_s); // nowhere a v: the key at its place
    EXPECT_TRUE(fires(u"55"_s));
}

TEST_F(X11Input, aPasteArrivesAsControlVInEveryLayoutWhateverIsHeld) {
    const std::vector<KeyEvent> paste = {{keyV, true, 1 << 20}, {keyV, false, 1 << 20}};
    const QStringList controlV = {u"press Control_L 0x0"_s, u"press v 0x4"_s, u"release v 0x4"_s,
                                  u"release Control_L 0x4"_s};
    for (const QString& layout : {u"us"_s, u"dvorak"_s, u"ru"_s, u"us,ru"_s}) {
        run(u"setxkbmap "_s + layout);
        KeyLog target(*connection);
        const bool isSecond = layout.contains(u',');
        xcb_xkb_latch_lock_state(connection->xcb(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, isSecond, 0,
                                 0, 0);
        const auto unusedKey = [&] { return X11Keymap::current(*connection)->unusedKey(); };
        const auto unusedBefore = unusedKey();
        run(u"xdotool keydown shift"_s);
        spinFor(std::chrono::milliseconds(100));
        target.forget();
        keys.post(paste, [](bool) {});
        EXPECT_TRUE(spinUntil([&] { return target.keys().size() >= 6; }));
        run(u"xdotool keyup shift"_s);
        QStringList seen = target.keys();
        EXPECT_EQ(seen.value(1).endsWith(u"0x2000"_s), isSecond);
        seen.replaceInStrings(QRegularExpression(u"0x2([0-9a-f]{3})$"_s), u"0x\\1"_s);
        seen.replaceInStrings(QRegularExpression(u"0x0*(?=[0-9a-f])"_s), u"0x"_s);
        EXPECT_EQ(seen.mid(1, 4), controlV) << layout.toStdString();
        EXPECT_TRUE(seen.value(0).startsWith(u"release Shift_L"_s));
        EXPECT_TRUE(seen.value(5).startsWith(u"press Shift_L"_s));
        EXPECT_TRUE(spinUntil([&] { return unusedKey() == unusedBefore; })) << "given back";
    }
}

TEST_F(X11Input, aTerminalGetsControlShiftV) {
    KeyLog target(*connection);
    run(u"xprop -id %1 -f WM_CLASS 8s -set WM_CLASS XTerm"_s.arg(activeWindow(*connection)));
    keys.post({{keyV, true, 1 << 20}, {keyV, false, 1 << 20}}, [](bool) {});
    EXPECT_TRUE(spinUntil([&] { return target.keys().contains(u"press V 0x5"_s); }));
}

TEST_F(X11Input, aPasteWaitsForTheModifiersToBeLetGo) {
    KeyLog target(*connection);
    run(u"xdotool key Caps_Lock keydown shift keydown super"_s);
    spinFor(std::chrono::milliseconds(100));
    bool isPosted = false;
    keys.post({{keyV, true, 1 << 20}, {keyV, false, 1 << 20}}, [&](bool done) { isPosted = done; });
    spinFor(std::chrono::milliseconds(100));
    EXPECT_FALSE(isPosted);
    target.forget();
    run(u"xdotool keyup shift keyup super"_s);
    EXPECT_TRUE(spinUntil([&] { return isPosted && target.keys().size() == 6; }));
    EXPECT_TRUE(target.keys().value(0).startsWith(u"release Shift_L"_s));
    EXPECT_TRUE(target.keys().value(1).startsWith(u"release Super_L"_s));
    run(u"xdotool key Caps_Lock"_s);
}

} // namespace

} // namespace quillet
