#include "platform/linux/InputDesktop.h"
#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryPreferences.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryWorkspace.h"
#include "settings/ui/SetupWindow.h"

namespace quillet {

using namespace Qt::StringLiterals;

/// The guide among the windows of a window manager.
class SetupWindowDesktopTest : public InputDesktop {
protected:
    bool isActive() {
        return spinUntil([&] { return setup.window()->isActiveWindow(); });
    }
    bool isOnboard() const { return preferences.value(SetupWindow::didOnboardKey()); }

    Theme theme;
    MemoryPreferences preferences;
    MemoryScheduler clock;
    MemoryAccess access;
    MemoryWorkspace workspace;
    MemoryCommands commands{clock};
    HotKeyCenter center{preferences, hotKeys, scheduler};
    Permissions permissions{{access, workspace, commands, clock}, {u"/usr/bin/quillet"_s, [] {}}};
    SetupWindow setup{{{theme, scheduler, panels}, permissions, center, preferences}};
};

TEST_F(SetupWindowDesktopTest, itComesBeforeWhateverIsActiveAndReturnEndsIt) {
    const KeyLog editor(*connection);
    setup.show();
    EXPECT_TRUE(isActive());
    EXPECT_EQ(setup.window()->size(), QSize(560, 640));
    const KeyLog browser(*connection);
    EXPECT_TRUE(spinUntil([&] { return !setup.window()->isActiveWindow(); }));
    setup.show();
    EXPECT_TRUE(isActive());
    run(u"xdotool key Return"_s);
    EXPECT_TRUE(spinUntil([&] { return !setup.window()->isVisible(); }));
    EXPECT_TRUE(isOnboard());
}

TEST_F(SetupWindowDesktopTest, theCloseBoxLeavesItForTheNextLaunch) {
    setup.show();
    ASSERT_TRUE(isActive());
    run(u"xdotool key alt+F4"_s);
    EXPECT_TRUE(spinUntil([&] { return !setup.window()->isVisible(); }));
    EXPECT_FALSE(isOnboard());
    setup.show();
    EXPECT_TRUE(isActive());
}

} // namespace quillet
