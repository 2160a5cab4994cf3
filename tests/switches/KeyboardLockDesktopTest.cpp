#include "platform/linux/InputDesktop.h"
#include "platform/linux/x11/X11KeyboardGrab.h"
#include "switches/ui/KeyboardLockHUD.h"

#include <gmock/gmock.h>
#include <QCoreApplication>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The lock as people meet it: on a display, beside another program.
class KeyboardLockDesktopTest : public InputDesktop {
protected:
    static bool keysArrive(KeyLog& editor) {
        editor.forget();
        run(u"xdotool key a"_s);
        return !editor.keys().isEmpty();
    }

    Theme theme;
    X11KeyboardGrab keyboard{*connection, panels, scheduler};
    KeyboardLock lock{keyboard, scheduler,
                      showKeyboardLockHUD({theme, scheduler, panels}, screens)};
};

TEST_F(KeyboardLockDesktopTest, theKeyboardIsDeadUntilTheButtonIsClicked) {
    KeyLog editor;
    int ends = 0;
    lock.onEnd = [&] { ++ends; };
    ASSERT_TRUE(lock.start(45));
    EXPECT_FALSE(keysArrive(editor));
    run(u"xdotool key Escape Return space"_s);
    spinFor(50ms);
    EXPECT_EQ(ends, 0) << "no key reaches the button";

    const Rect screen = screens.main()->frame;
    run(u"xdotool mousemove %1 %2 click 1"_s.arg(screen.midX()).arg(screen.midY() + 55));
    EXPECT_TRUE(spinUntil([&] { return ends == 1; }));
    EXPECT_TRUE(keysArrive(editor));
}

/// Run by the test below in a process of its own, which never comes to an end by itself.
TEST_F(KeyboardLockDesktopTest, DISABLED_lockForGood) {
    ASSERT_TRUE(lock.start(3600));
    spinFor(1h);
}

TEST_F(KeyboardLockDesktopTest, aQuilletThatIsKilledLeavesNobodyWithoutAKeyboard) {
    KeyLog editor;
    EXPECT_TRUE(keysArrive(editor));
    QProcess locking;
    locking.start(QCoreApplication::applicationFilePath(),
                  {u"--gtest_also_run_disabled_tests"_s, u"--gtest_filter=*lockForGood"_s});
    ASSERT_TRUE(spinUntil([&] { return !keysArrive(editor); }));
    locking.kill();
    locking.waitForFinished();
    EXPECT_TRUE(spinUntil([&] { return keysArrive(editor); }));
}

} // namespace quillet
