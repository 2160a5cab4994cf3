#include "platform/linux/InputDesktop.h"
#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryPreferences.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryWorkspace.h"
#include "settings/ui/SetupWindow.h"
#include "support/FakeApplication.h"

#include <gmock/gmock.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The guide among the windows of a window manager.
class SetupWindowDesktopTest : public InputDesktop {
protected:
    bool isActive() {
        return spinUntil([&] { return setup.window()->isActiveWindow(); });
    }
    bool isOnboard() const { return preferences.value(SetupWindow::didOnboardKey()); }
    QPoint position() const { return setup.window()->pos(); }

    Theme theme;
    MemoryPreferences preferences;
    MemoryScheduler clock;
    MemoryAccess access;
    MemoryWorkspace workspace;
    MemoryCommands commands{clock};
    HotKeyCenter center{preferences, hotKeys, scheduler};
    Permissions permissions{{access, workspace, commands, clock}, {u"/usr/bin/quillet"_s, [] {}}};
    SetupWindow setup{{{theme, scheduler, panels}, permissions, center, preferences, screens}};
};

TEST_F(SetupWindowDesktopTest, itComesBeforeWhateverIsActiveAndReturnEndsIt) {
    const KeyLog editor;
    setup.show();
    EXPECT_TRUE(isActive());
    EXPECT_EQ(setup.window()->size(), QSize(560, 640));
    const KeyLog browser;
    EXPECT_TRUE(spinUntil([&] { return !setup.window()->isActiveWindow(); }));
    setup.show();
    EXPECT_TRUE(isActive());
    run(u"xdotool key Return"_s);
    EXPECT_TRUE(spinUntil([&] { return !setup.window()->isVisible(); }));
    EXPECT_TRUE(isOnboard());
}

TEST_F(SetupWindowDesktopTest, itComesFromTheTaskbarAndFromAnotherWorkspaceToWhereItWas) {
    setup.show();
    ASSERT_TRUE(isActive());
    const QPoint place = position();
    setup.window()->showMinimized();
    ASSERT_TRUE(spinUntil([&] { return !setup.window()->isActiveWindow(); }));
    setup.show();
    EXPECT_TRUE(isActive());
    EXPECT_FALSE(setup.window()->isMinimized());

    run(u"xdotool set_num_desktops 2 set_desktop 1"_s);
    const KeyLog browser;
    ASSERT_TRUE(spinUntil([&] { return !setup.window()->isActiveWindow(); }));
    setup.show();
    EXPECT_TRUE(isActive());
    const auto current = connection->values(
        connection->root(), connection->atom("_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL, 1);
    EXPECT_THAT(current, testing::ElementsAre(1u)) << "the user stays where they are";
    EXPECT_EQ(position(), place);
    run(u"xdotool set_desktop 0"_s);
}

TEST_F(SetupWindowDesktopTest, itStandsWithItsFrameInTheMiddleOfWhatItsMonitorHasFree) {
    run(u"xrandr --setmonitor Left 960/250x1080/280+0+0 screen"_s);
    run(u"xrandr --setmonitor Right 960/250x1080/280+960+0 none"_s);
    run(u"xdotool mousemove 1400 500"_s);
    {
        FakeApplication dock(qgetenv("DISPLAY"), "Dock");
        dock.reserve({0, 0, 0, 300, 0, 0, 0, 0, 0, 0, 960, 1919}); // below, on the right
        setup.show();
        EXPECT_TRUE(spinUntil([&] {
            const QPoint off = setup.window()->frameGeometry().center() - QPoint(1440, 390);
            return off.manhattanLength() <= 2;
        }));
        EXPECT_EQ(setup.window()->height(), 640);
    }
    run(u"xrandr --delmonitor Right"_s);
    run(u"xrandr --delmonitor Left"_s);
}

TEST_F(SetupWindowDesktopTest, aFreePlaceMovesItAndAClickThereDoesNot) {
    setup.show();
    ASSERT_TRUE(isActive());
    const QPoint place = position();
    const QPoint free = setup.window()->mapToGlobal(QPoint(20, 100));
    run(u"xdotool mousemove %1 %2 click 1"_s.arg(free.x()).arg(free.y()));
    spinFor(100ms);
    run(u"xdotool mousemove_relative 90 60"_s);
    spinFor(100ms);
    EXPECT_EQ(position(), place);
    run(u"xdotool mousemove %1 %2 mousedown 1"_s.arg(free.x()).arg(free.y()));
    for (int step = 0; step < 4; ++step) {
        run(u"xdotool mousemove_relative 20 10"_s);
        spinFor(50ms);
    }
    run(u"xdotool mouseup 1"_s);
    EXPECT_TRUE(spinUntil([&] { return position().x() >= place.x() + 40; }));
}

} // namespace quillet
