#include "switches/KeyboardLock.h"
#include "platform/memory/MemoryKeyboardGrab.h"
#include "platform/memory/MemoryScheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

namespace quillet {

using namespace std::chrono_literals;

class KeyboardLockTest : public testing::Test {
protected:
    KeyboardLockTest() {
        lock->onEnd = [this] {
            ++ends;
            EXPECT_FALSE(keyboard.isHeld() || isShown());
        };
        QObject::connect(&lock->hudState(), &HUDState::remainingChanged,
                         [this] { counted.push_back(lock->hudState().remaining()); });
    }

    bool isShown() const { return !hud.expired(); }

    MemoryScheduler scheduler;
    MemoryKeyboardGrab keyboard;
    std::weak_ptr<void> hud;
    std::function<void()> done;
    std::vector<int> counted;
    int ends = 0;
    std::optional<KeyboardLock> lock{std::in_place, keyboard, scheduler,
                                     [this](HUDState&, std::function<void()> onDone) {
                                         done = std::move(onDone);
                                         const auto shown = std::make_shared<char>();
                                         hud = shown;
                                         return KeyboardLock::HUD(shown);
                                     }};
};

TEST_F(KeyboardLockTest, itCountsDownFromTheFullTimeToOneAndUnlocksByItself) {
    EXPECT_TRUE(lock->start(3));
    scheduler.advance(1s);
    EXPECT_TRUE(lock->start(45)) << "which keeps the end";
    scheduler.advance(1999ms);
    EXPECT_TRUE(keyboard.isHeld() && isShown());
    EXPECT_EQ(ends, 0);
    scheduler.advance(1ms);
    EXPECT_FALSE(keyboard.isHeld() || isShown());
    scheduler.advance(60s);
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(counted, testing::ElementsAre(3, 2, 1));
}

TEST_F(KeyboardLockTest, itsEndNeitherWaitsForATickNorForAClockThatIsSetBack) {
    lock->start(1.2);
    scheduler.advance(500ms);
    scheduler.setNow(scheduler.now().addSecs(-3600));
    scheduler.advance(699ms);
    EXPECT_TRUE(keyboard.isHeld());
    scheduler.advance(1ms);
    EXPECT_FALSE(keyboard.isHeld());
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(counted, testing::Each(testing::Le(2)));

    lock->start(45);
    EXPECT_EQ(lock->hudState().remaining(), 45);
    scheduler.setNow(scheduler.now().addSecs(60)); // as after sleep
    scheduler.advance(500ms);
    EXPECT_FALSE(keyboard.isHeld());
}

TEST_F(KeyboardLockTest, aKeyboardThatCannotBeHadShowsNothing) {
    keyboard.isTakenElsewhere = true;
    EXPECT_FALSE(lock->start(45));
    scheduler.advance(60s);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(ends, 0);
}

TEST_F(KeyboardLockTest, itsOwnersEndFreesTheKeyboardInSilence) {
    lock->start(45);
    lock.reset();
    EXPECT_FALSE(keyboard.isHeld() || isShown());
    done();
    scheduler.advance(60s);
    EXPECT_EQ(ends, 0);
}

} // namespace quillet
