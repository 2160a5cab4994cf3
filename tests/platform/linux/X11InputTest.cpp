#include "contracts/HotKeysContract.h"
#include "platform/linux/InputDesktop.h"
#include "platform/linux/x11/XcbXkb.h"
#include "support/XClient.h"

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;

constexpr uint32_t keyV = 9;
constexpr uint32_t commandShift = 0x300;

struct X11HotKeysBackend : InputParts {
    XClient other{qgetenv("DISPLAY")};

    HotKeyService& hotKeys() { return InputParts::hotKeys; }

    void takeElsewhere(uint32_t keyCode, uint32_t) {
        xcb_grab_key(other.connection(), 1, other.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT,
                     keyMeaning(keyCode)->position, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        other.serverTime();
    }

    void changeLayout(bool isFirst) {
        run(isFirst ? u"setxkbmap us"_s : u"setxkbmap dvorak"_s);
        spinFor(300ms);
    }

    static void press(uint32_t keyCode, uint32_t modifiers) {
        const QString shift = modifiers & 0x200 ? u"shift+"_s : QString();
        run(u"xdotool key super+%1%2"_s.arg(shift).arg(keyMeaning(keyCode)->position));
        spinFor(100ms);
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, HotKeysContract, X11HotKeysBackend);

class X11Input : public InputDesktop {
protected:
    size_t pressesOf(const QString& combination) {
        pressed.clear();
        run(u"xdotool key "_s + combination);
        spinUntil([this] { return !pressed.empty(); }, 300ms);
        spinFor(30ms); // for one too many
        return pressed.size();
    }
};

TEST_F(X11Input, aShortcutFiresOncePerPressWithAnyLockOnAndHoweverLongItIsHeld) {
    const auto shelf = hotKeys.add(keyV, commandShift, 1);
    ASSERT_TRUE(shelf);
    EXPECT_EQ(pressesOf(u"super+shift+v"_s), 1U);
    EXPECT_EQ(pressesOf(u"super+v"_s), 0U);
    for (const QString& lock : {u"Num_Lock"_s, u"Caps_Lock"_s}) {
        run(u"xdotool key "_s + lock);
        EXPECT_EQ(pressesOf(u"super+shift+v"_s), 1U) << lock.toStdString();
        run(u"xdotool key "_s + lock);
    }

    run(u"xset r rate 100 50"_s);
    pressed.clear();
    run(u"xdotool keydown super keydown shift keydown v"_s);
    spinFor(400ms);
    EXPECT_EQ(pressed, std::vector<uint32_t>{1});
    EXPECT_TRUE(spinUntil([] { return ForeignGrab().hasIt(); }))
        << "a panel may have it before the key is up";
    run(u"xdotool keyup v keyup shift keyup super"_s);
    run(u"xset r rate"_s);
    EXPECT_EQ(pressesOf(u"super+shift+v"_s), 1U);
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

TEST_F(X11Input, aPasteWaitsForTheModifiersToBeLetGo) {
    KeyLog target;
    run(u"xdotool key Caps_Lock keydown shift keydown super"_s);
    target.forget();
    bool isPosted = false;
    keys.post({{keyV, true, 1 << 20}, {keyV, false, 1 << 20}}, [&](bool done) { isPosted = done; });
    spinFor(200ms);
    EXPECT_FALSE(isPosted);
    run(u"xdotool keyup shift keyup super"_s);
    EXPECT_TRUE(spinUntil([&] { return isPosted && target.keys().size() >= 6; }));
    EXPECT_EQ(target.keys(), (QStringList{u"release Shift_L 0x43"_s, u"release Super_L 0x42"_s,
                                          u"press Control_L 0x2"_s, u"press v 0x6"_s,
                                          u"release v 0x6"_s, u"release Control_L 0x6"_s}));
    run(u"xdotool key Caps_Lock"_s);
}

} // namespace

} // namespace quillet
