#include "switches/ui/KeyboardLockHUD.h"
#include "look/Picture.h"
#include "platform/memory/MemoryKeyboardGrab.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryScreens.h"

#include <QApplication>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class KeyboardLockHUDTest : public testing::Test {
protected:
    MemoryPanel& panel() { return *panels.all().front(); }

    Theme theme;
    MemoryScheduler scheduler;
    MemoryPanels panels;
    MemoryScreens screens;
    MemoryKeyboardGrab keyboard;
    KeyboardLock lock{keyboard, scheduler,
                      showKeyboardLockHUD({theme, scheduler, panels}, screens)};
};

TEST_F(KeyboardLockHUDTest, itStandsInTheMiddleAndItsButtonEndsTheLock) {
    const Rect screen{{1440, -180}, {1920, 1080}};
    screens.screens = {{2, u"HDMI-1"_s, screen, screen, 1}};
    lock.start(45);
    EXPECT_EQ(panel().frame(), (Rect{{2240, 250}, {320, 220}}));
    EXPECT_TRUE(panel().isVisible());
    EXPECT_FALSE(panel().isKey() || panel().style.ignoresMouse);
    scheduler.advance(3s);
    EXPECT_EQ(panel().content.accessibleName(), u"Keyboard locked. Wipe away — unlocks in 42s"_s);
    panel().content.findChild<Button*>()->click();
    QApplication::processEvents();
    EXPECT_FALSE(keyboard.isHeld());
    EXPECT_TRUE(panels.all().empty());
}

TEST_F(KeyboardLockHUDTest, itLooksAsDrawn) {
    lock.start(45);
    EXPECT_TRUE(matchesPicture(panel().content.grab().toImage(), u"lock-hud-light"_s));
    theme.setAppearance(Appearance::dark);
    EXPECT_TRUE(matchesPicture(panel().content.grab().toImage(), u"lock-hud-dark"_s));
}

} // namespace quillet
