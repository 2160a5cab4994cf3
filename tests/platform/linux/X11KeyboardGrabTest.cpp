#include "platform/linux/x11/X11KeyboardGrab.h"
#include "contracts/KeyboardGrabContract.h"
#include "platform/linux/InputDesktop.h"
#include "platform/linux/ProcessCommands.h"
#include "platform/linux/x11/X11Access.h"
#include "support/DesktopSession.h"

#include <QRegularExpression>
#include <QWidget>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QString lockLights() {
    QProcess query;
    query.start(u"xset"_s, {u"q"_s});
    query.waitForFinished();
    static const QRegularExpression light(u"(Caps|Num) Lock: *(on|off)"_s);
    QStringList lights;
    for (auto it = light.globalMatch(QString::fromLatin1(query.readAllStandardOutput()));
         it.hasNext();)
        lights << it.next().captured(2);
    return lights.join(u' ');
}

} // namespace

class X11KeyboardGrabTest : public InputDesktop {
protected:
    X11KeyboardGrab keyboard{*connection, panels, scheduler};
    KeyLog target;
};

struct X11KeyboardGrabBackend : InputParts {
    X11KeyboardGrab x11{*connection, panels, scheduler};
    KeyLog target;
    std::optional<ForeignGrab> other;

    KeyboardGrab& keyboard() { return x11; }
    void takeElsewhere() { other.emplace(); }
    void giveBackElsewhere() { other.reset(); }
    bool keysReachPrograms() {
        target.forget();
        run(u"xdotool key a"_s);
        return !target.keys().isEmpty();
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, KeyboardGrabContract, X11KeyboardGrabBackend);

TEST_F(X11KeyboardGrabTest, shortcutsMediaKeysAndWhatIsTypedAfterAClickReachNobody) {
    XClient other(qgetenv("DISPLAY"));
    xcb_grab_key(other.connection(), 1, other.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT,
                 keyMeaning(8)->position, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    other.serverTime();
    const auto isPress = [](const auto& event) { return eventType(event) == XCB_KEY_PRESS; };
    const auto own = hotKeys.add(9, 0x300, 1);
    ASSERT_TRUE(own);

    auto hold = keyboard.hold();
    ASSERT_NE(hold, nullptr);
    run(u"xdotool key super+shift+v super+shift+c XF86AudioRaiseVolume ctrl+alt+Right Escape"_s);
    run(u"xdotool mousemove 960 540 click 1"_s);
    run(u"xdotool type --delay 1 secret"_s);
    spinFor(100ms);
    EXPECT_TRUE(pressed.empty());
    EXPECT_FALSE(other.wait(isPress, 0ms));
    hold.reset();
    EXPECT_EQ(target.keys(), QStringList());
    run(u"xdotool key super+shift+v super+shift+c"_s);
    EXPECT_TRUE(spinUntil([&] { return pressed.size() == 1; }));
    EXPECT_TRUE(other.wait(isPress, 1s));
}

TEST_F(X11KeyboardGrabTest, locksAreAsBeforeAndAHalfPressedKeyReachesNobody) {
    const QString before = lockLights();
    auto hold = keyboard.hold();
    ASSERT_NE(hold, nullptr);
    run(u"xdotool key Caps_Lock Num_Lock"_s);
    EXPECT_NE(lockLights(), before);
    run(u"xdotool keydown a"_s);
    hold.reset();
    spinFor(700ms); // long enough for the key to repeat
    run(u"xdotool keyup a"_s);
    EXPECT_TRUE(spinUntil([&] { return lockLights() == before; }));
    EXPECT_EQ(target.keys(), QStringList());

    run(u"xdotool keydown b"_s);
    hold = keyboard.hold();
    hold.reset();
    hold = keyboard.hold();
    EXPECT_NE(hold, nullptr) << "held again before the keys were up";
    run(u"xdotool keyup b"_s);
}

TEST_F(X11KeyboardGrabTest, thePanelWithTheKeyboardResignsIt) {
    QWidget content;
    const auto panel = panels.make(content, {101, true, false, 0, 0});
    int resigned = 0;
    panel->onResignKey = [&] { ++resigned; };
    panel->setFrame({{200, 300}, {400, 120}});
    panel->makeKeyAndOrderFront();
    spinFor(50ms);
    const auto hold = keyboard.hold();
    EXPECT_NE(hold, nullptr);
    EXPECT_EQ(resigned, 1);
}

TEST(X11AccessTest, whatTheServerLacksIsMissingWithItsCause) {
    ProcessCommands commands;
    const ProcessHandle server(new QProcess);
    server->start(u"Xvfb"_s, u"-displayfd 1 -nolisten tcp -extension XTEST"_s.split(u' '));
    ASSERT_TRUE(server->waitForReadyRead());
    const QByteArray own = qgetenv("DISPLAY");
    qputenv("DISPLAY", ':' + server->readAllStandardOutput().trimmed());
    const auto connection = X11Connection::open();
    qputenv("DISPLAY", own);
    ASSERT_NE(connection, nullptr);
    const X11Access access(*connection, commands);
    EXPECT_FALSE(access.isGranted(Access::Kind::accessibility));
    EXPECT_EQ(access.cause(Access::Kind::accessibility),
              u"The X server lacks the XTest extension."_s);
    EXPECT_TRUE(access.isGranted(Access::Kind::screenRecording));
}

} // namespace quillet
