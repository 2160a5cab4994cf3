#include "switches/SwitchCenter.h"

#include "platform/memory/MemoryPlatform.h"

#include <gmock/gmock.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Duration = SwitchCenter::AwakeDuration;
using Key = DesktopSettings::FileManagerKey;
using Type = Power::AssertionType;

class SwitchCenterTest : public testing::Test {
protected:
    SwitchCenterTest() { launch(); }

    void launch() {
        const auto showHUD = [this](HUDState&, std::function<void()> onDone) {
            done = std::move(onDone);
            return KeyboardLock::HUD(std::make_shared<char>());
        };
        switches.emplace(SwitchCenter::Services{power, desktop, memory.preferences, scheduler,
                                                permissions, keyboard},
                         showHUD, [this] { ++guides; });
    }

    std::optional<QDateTime> inSeconds(int seconds) const {
        return scheduler.now().addSecs(seconds);
    }

    bool isIndefinite() const { return memory.preferences.value(SwitchCenter::indefiniteKey()); }

    void expectOff() const {
        EXPECT_FALSE(switches->keepAwake());
        EXPECT_EQ(switches->awakeDuration(), std::nullopt);
        EXPECT_EQ(switches->awakeUntil(), std::nullopt);
        EXPECT_THAT(power.held(), IsEmpty());
    }

    Platform platform = makeMemoryPlatform();
    MemoryFakes memory{platform};
    MemoryScheduler& scheduler = memory.scheduler;
    MemoryPower& power = memory.power;
    MemoryDesktopSettings& desktop = memory.desktop;
    MemoryKeyboardGrab& keyboard = memory.keyboard;
    Permissions permissions{{memory.access, memory.workspace, memory.commands, scheduler}, {}};
    std::function<void()> done;
    int guides = 0;
    std::optional<SwitchCenter> switches;
};

const MemoryPower::Taken displayAwake{Type::preventUserIdleDisplaySleep, u"Quillet Keep Awake"_s};
const MemoryPower::Taken systemAwake{Type::preventUserIdleSystemSleep, u"Quillet Keep Awake"_s};

TEST_F(SwitchCenterTest, everyDurationKeepsAwakeForItsLengthAndNotASecondLonger) {
    const std::pair<Duration, int> lengths[] = {{Duration::minutes30, 1800},
                                                {Duration::hour1, 3600},
                                                {Duration::hours2, 7200},
                                                {Duration::hours4, 14400}};
    for (const auto& [duration, seconds] : lengths) {
        switches->setKeepAwake(true, Duration::minutes30);
        scheduler.advance(20min);
        switches->setKeepAwake(true, duration); // which replaces the first one and its timer
        EXPECT_EQ(switches->awakeDuration(), duration);
        EXPECT_EQ(switches->awakeUntil(), inSeconds(seconds));
        EXPECT_FALSE(isIndefinite());
        scheduler.advance(std::chrono::seconds(seconds) - 1ms);
        EXPECT_THAT(power.held(), ElementsAre(displayAwake));
        scheduler.advance(1ms);
        expectOff();
    }
    switches->setKeepAwake(true, Duration::hour1);
    switches->setKeepAwake(true, Duration::indefinitely);
    EXPECT_EQ(switches->awakeUntil(), std::nullopt);
    EXPECT_TRUE(scheduler.isIdle());
    EXPECT_TRUE(isIndefinite());
    switches->setKeepAwake(false, Duration::indefinitely);
    expectOff();
    EXPECT_FALSE(isIndefinite());
    EXPECT_EQ(power.mostHeld, 1u) << "at no time two";
}

TEST_F(SwitchCenterTest, lettingTheDisplaySleepSwapsTheAssertionAndKeepsTheEnd) {
    switches->setKeepAwake(true, Duration::hour1);
    const auto end = switches->awakeUntil();
    scheduler.advance(50min);
    switches->setAllowDisplaySleep(true);
    EXPECT_THAT(power.held(), ElementsAre(systemAwake));
    EXPECT_EQ(switches->awakeUntil(), end);
    EXPECT_EQ(switches->awakeDuration(), Duration::hour1);
    scheduler.advance(10min);
    expectOff();
    launch();
    EXPECT_TRUE(switches->allowDisplaySleep());

    switches->setKeepAwake(true, Duration::indefinitely);
    switches->setAllowDisplaySleep(false);
    EXPECT_THAT(power.held(), ElementsAre(displayAwake));
    EXPECT_TRUE(isIndefinite());

    switches->setKeepAwake(true, Duration::minutes30);
    scheduler.setNow(scheduler.now().addSecs(3600));
    switches->setAllowDisplaySleep(true);
    EXPECT_EQ(switches->awakeUntil(), inSeconds(1800)) << "the clock has passed the end";
}

TEST_F(SwitchCenterTest, whatCannotBeHeldIsOffButIsTriedAgainInTheNextRun) {
    power.isAvailable = false;
    switches->setKeepAwake(true, Duration::indefinitely);
    expectOff();
    EXPECT_TRUE(isIndefinite());

    power.isAvailable = true;
    switches->setKeepAwake(true, Duration::hour1);
    power.isAvailable = false;
    switches->setAllowDisplaySleep(true);
    expectOff();
    EXPECT_TRUE(scheduler.isIdle());

    power.isAvailable = true;
    for (const Duration duration : {Duration::indefinitely, Duration::hour1}) {
        switches->setKeepAwake(true, duration);
        power.loseAll();
        expectOff();
        EXPECT_TRUE(scheduler.isIdle());
        EXPECT_EQ(isIndefinite(), duration == Duration::indefinitely);
    }
}

TEST_F(SwitchCenterTest, fileManagersSettingsAreReadInEveryWayTheyAreWritten) {
    const std::pair<QVariant, bool> values[] = {{true, true},      {false, false}, {u"YES"_s, true},
                                                {u"true"_s, true}, {u"1"_s, true}, {u"0"_s, false},
                                                {2, true},         {0, false},     {0.5, true}};
    for (const auto& [value, isTrue] : values) {
        desktop.store(Key::createDesktop, value);
        desktop.store(Key::showAllFiles, value);
        EXPECT_EQ(switches->desktopIconsHidden(), !isTrue) << value.toString().toStdString();
        EXPECT_EQ(switches->hiddenFilesShown(), isTrue) << value.toString().toStdString();
    }
    for (const QVariant& strange : {QVariant(), QVariant(QStringList(u"1"_s))}) {
        desktop.store(Key::createDesktop, strange);
        desktop.store(Key::showAllFiles, strange);
        launch();
        EXPECT_FALSE(switches->desktopIconsHidden());
        EXPECT_FALSE(switches->hiddenFilesShown());
    }
}

TEST_F(SwitchCenterTest, darkModeFollowsTheDesktopWhoeverChangesIt) {
    int changes = 0;
    QObject::connect(&*switches, &SwitchCenter::darkModeChanged, [&] { ++changes; });
    desktop.setDark(true);
    EXPECT_TRUE(switches->darkMode());
    switches->toggleDarkMode();
    EXPECT_FALSE(switches->darkMode());
    EXPECT_EQ(changes, 2);
    desktop.letsToggleDark = false;
    switches->toggleDarkMode();
    EXPECT_FALSE(switches->darkMode()) << "what really is";
    EXPECT_EQ(desktop.timesOpened, 1);
}

TEST_F(SwitchCenterTest, theKeyboardIsLockedForCleaningWhereThatIsAllowed) {
    memory.access.granted.clear();
    switches->lockKeyboardForCleaning();
    EXPECT_EQ(guides, 1);
    EXPECT_FALSE(keyboard.isHeld() || switches->keyboardLocked());

    memory.access.granted.insert(Access::Kind::accessibility);
    keyboard.isTakenElsewhere = true;
    int told = 0;
    switches->lockKeyboardForCleaning([&] { ++told; });
    scheduler.advance(499ms);
    EXPECT_EQ(told, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(switches->keyboardLocked());
    switches->lockKeyboardForCleaning();
    keyboard.isTakenElsewhere = false; // a shortcut is let go of
    scheduler.advance(50ms);
    EXPECT_TRUE(keyboard.isHeld() && switches->keyboardLocked());
    scheduler.advance(44s);
    EXPECT_TRUE(switches->keyboardLocked());
    scheduler.advance(1s);
    EXPECT_FALSE(keyboard.isHeld() || switches->keyboardLocked());

    switches->lockKeyboardForCleaning();
    done();
    EXPECT_FALSE(keyboard.isHeld() || switches->keyboardLocked());
}

} // namespace quillet
