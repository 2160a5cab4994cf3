#include "look/Picture.h"
#include "platform/memory/MemoryKeyboardGrab.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryScreens.h"
#include "switches/ui/KeyboardLockHUD.h"

#include <gmock/gmock.h>
#include <optional>
#include <QApplication>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class KeyboardLockTest : public testing::Test {
protected:
    KeyboardLockTest() {
        lock->onEnd = [this] {
            ++ends;
            EXPECT_FALSE(isLocked());
        };
        QObject::connect(&lock->hudState(), &HUDState::remainingChanged,
                         [this] { counted.push_back(lock->hudState().remaining()); });
    }

    bool isLocked() const {
        EXPECT_EQ(keyboard.isHeld(), !panels.all().empty());
        return keyboard.isHeld();
    }
    MemoryPanel& panel() { return *panels.all().front(); }

    Theme theme;
    MemoryScheduler scheduler;
    MemoryPanels panels;
    MemoryScreens screens;
    MemoryKeyboardGrab keyboard;
    std::vector<int> counted;
    int ends = 0;
    std::optional<KeyboardLock> lock{std::in_place, keyboard, scheduler,
                                     showKeyboardLockHUD({theme, scheduler, panels}, screens)};
};

TEST_F(KeyboardLockTest, itCountsDownFromTheFullTimeToOneAndUnlocksByItself) {
    EXPECT_TRUE(lock->start(3));
    scheduler.advance(1s);
    EXPECT_TRUE(lock->start(45)) << "which keeps the end";
    EXPECT_EQ(panel().content.accessibleName(), u"Keyboard locked. Wipe away — unlocks in 2s"_s);
    scheduler.advance(1999ms);
    EXPECT_TRUE(isLocked());
    EXPECT_EQ(ends, 0);
    scheduler.advance(1ms);
    EXPECT_FALSE(isLocked());
    scheduler.advance(60s);
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(counted, testing::ElementsAre(3, 2, 1));
}

TEST_F(KeyboardLockTest, itsEndNeitherWaitsForATickNorForAClockThatIsSetBack) {
    lock->start(1.2);
    scheduler.advance(500ms);
    scheduler.setNow(scheduler.now().addSecs(-3600));
    scheduler.advance(699ms);
    EXPECT_TRUE(isLocked());
    scheduler.advance(1ms);
    EXPECT_FALSE(isLocked());
    EXPECT_THAT(counted, testing::Each(testing::Le(2)));

    lock->start(45);
    scheduler.setNow(scheduler.now().addSecs(60)); // as after sleep
    scheduler.advance(500ms);
    EXPECT_FALSE(isLocked());
}

TEST_F(KeyboardLockTest, itLocksOnlyWhatItCanHaveAndOnlyWhileItsOwnerLives) {
    keyboard.isTakenElsewhere = true;
    EXPECT_FALSE(lock->start(45));
    EXPECT_FALSE(isLocked());
    keyboard.isTakenElsewhere = false;
    lock->start(45);
    lock.reset();
    EXPECT_FALSE(isLocked());
    EXPECT_EQ(ends, 0) << "in silence";
}

TEST_F(KeyboardLockTest, itsPanelStandsInTheMiddleAndItsButtonEndsTheLock) {
    const Rect screen{{1440, -180}, {1920, 1080}};
    screens.screens = {{2, u"HDMI-1"_s, screen, screen, 1}};
    lock->start(45);
    EXPECT_EQ(panel().frame(), (Rect{{2240, 250}, {320, 220}}));
    EXPECT_FALSE(panel().isKey() || panel().style.ignoresMouse);
    EXPECT_TRUE(matchesPicture(panel().content.grab().toImage(), u"lock-hud-light"_s));
    theme.setAppearance(Appearance::dark);
    EXPECT_TRUE(matchesPicture(panel().content.grab().toImage(), u"lock-hud-dark"_s));
    panel().content.findChild<Button*>()->click();
    QApplication::processEvents();
    EXPECT_FALSE(isLocked());
}

} // namespace quillet
