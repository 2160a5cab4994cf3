#include "hotkeys/HotKeyWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using enum HotKeyAction;
using testing::ElementsAre;
using testing::IsEmpty;

class HotKeyCenterTest : public testing::Test, protected HotKeyWorld {
protected:
    void changeKeyboard(std::set<MemoryHotKeys::Combination> taken) {
        keys.changeKeyboard(std::move(taken));
        scheduler.advance(std::chrono::milliseconds(0));
    }

    const Shortcut mine{40, 0x1800, u"K"_s};
};

TEST_F(HotKeyCenterTest, aChosenShortcutWorksAtOnceAndAfterARelaunch) {
    handle(pickColor);
    int changes = 0;
    QObject::connect(center.get(), &HotKeyCenter::shortcutsChanged, [&] { ++changes; });
    center->set(mine, pickColor);
    center->set(mine, pickColor);
    EXPECT_EQ(changes, 1);
    EXPECT_THAT(press(mine), ElementsAre(pickColor));
    EXPECT_THAT(press(row(pickColor).defaultShortcut), IsEmpty());
    relaunch();
    EXPECT_EQ(center->shortcut(pickColor), mine);
    center->resetAll();
    relaunch();
    EXPECT_EQ(center->shortcut(pickColor), row(pickColor).defaultShortcut);
}

TEST_F(HotKeyCenterTest, brokenStoredValuesCostOnlyTheirOwnAction) {
    preferences.set(key(1), QByteArray("{\"keyCode\":9}"));
    preferences.set(key(2), mine.toJson());
    preferences.set(key(3), QByteArray(R"({"keyCode":-1,"modifiers":768,"keyName":"x"})"));
    preferences.set(PreferenceKey<int>{key(4).name, 0}, 7);
    relaunch();
    EXPECT_EQ(center->shortcut(clipboardShelf), row(clipboardShelf).defaultShortcut);
    EXPECT_EQ(preferences.value(key(1)), "{\"keyCode\":9}") << "left to the user";
    EXPECT_EQ(center->shortcut(captureArea), mine);
    EXPECT_EQ(center->shortcut(captureText), row(captureText).defaultShortcut);
    handle(captureScreen);
    EXPECT_THAT(center->failed(), ElementsAre(captureScreen));
}

TEST_F(HotKeyCenterTest, aTakenCombinationFailsUntilTheNextAttempt) {
    keys.taken = {{9, 0x300}};
    int changes = 0;
    QObject::connect(center.get(), &HotKeyCenter::failedChanged, [&] { ++changes; });
    handle(clipboardShelf);
    handle(clipboardShelf);
    EXPECT_THAT(center->failed(), ElementsAre(clipboardShelf));
    EXPECT_EQ(changes, 1);
    center->suspend();
    EXPECT_THAT(center->failed(), ElementsAre(clipboardShelf));
    keys.taken.clear();
    center->resume();
    EXPECT_THAT(center->failed(), IsEmpty());
    EXPECT_THAT(press(row(clipboardShelf).defaultShortcut), ElementsAre(clipboardShelf));
}

TEST_F(HotKeyCenterTest, anotherKeyboardLayoutDecidesAnewWhichShortcutsWork) {
    keys.taken = {{9, 0x300}};
    handle(clipboardShelf);
    handle(maximize);
    changeKeyboard({{36, 0x1800}});
    EXPECT_THAT(center->failed(), ElementsAre(maximize));
    EXPECT_THAT(press(row(clipboardShelf).defaultShortcut), ElementsAre(clipboardShelf));
    center->suspend();
    changeKeyboard({});
    EXPECT_THAT(keys.registered(), IsEmpty()) << "a recorder listens";
    center->resume();
    EXPECT_THAT(center->failed(), IsEmpty());
    EXPECT_THAT(keys.registered(), ElementsAre(1, 14)) << "those with handlers only";
}

} // namespace quillet
