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
    const Shortcut mine{40, 0x1800, u"K"_s};
};

TEST_F(HotKeyCenterTest, aFirstLaunchHasTheFactoryShortcutsAndRegistersNone) {
    QStringList listed;
    for (const HotKeyActionRow& row : hotKeyActions()) {
        listed << rawValue(row.group) + u": "_s + row.title + u' ' +
                      center->shortcut(row.action).display();
    }
    EXPECT_EQ(listed.join(u'\n'), u"Clipboard: Clipboard history ⇧⌘V\n"
                                  u"Capture: Capture area (Space: window) ⇧⌘2\n"
                                  u"Capture: Capture full screen ⇧⌘1\n"
                                  u"Capture: Copy text from screen ⇧⌘6\n"
                                  u"Capture: Pick color ⇧⌘7\n"
                                  u"Windows: Left half ⌃⌥←\n"
                                  u"Windows: Right half ⌃⌥→\n"
                                  u"Windows: Top half ⌃⌥↑\n"
                                  u"Windows: Bottom half ⌃⌥↓\n"
                                  u"Windows: Maximize ⌃⌥↩\n"
                                  u"Windows: Center ⌃⌥C"_s);
    EXPECT_THAT(keys.registered(), IsEmpty());
    std::vector<uint32_t> numbers;
    for (uint32_t number = 0; number < 20; ++number) {
        if (hotKeyAction(number))
            numbers.push_back(number);
    }
    EXPECT_THAT(numbers, ElementsAre(1, 2, 3, 4, 5, 10, 11, 12, 13, 14, 15));
    EXPECT_EQ(hotKeyGroup(u"Windows"_s), HotKeyGroup::windows);
    EXPECT_EQ(hotKeyGroup(u"windows"_s), std::nullopt);
}

TEST_F(HotKeyCenterTest, aPressRunsTheLatestHandlerOnce) {
    handle(clipboardShelf);
    int replaced = 0;
    center->registerAction(clipboardShelf, [&] { ++replaced; });
    EXPECT_THAT(keys.registered(), ElementsAre(1));
    EXPECT_THAT(press(center->shortcut(clipboardShelf)), IsEmpty());
    EXPECT_EQ(replaced, 1);
    center->resetAll();
    EXPECT_THAT(press(center->shortcut(maximize)), IsEmpty()) << "an action without a handler";
    handle(maximize);
    EXPECT_THAT(press(center->shortcut(maximize)), ElementsAre(maximize));
}

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
    EXPECT_FALSE(center->isRegistered(clipboardShelf));
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
    keys.changeKeyboard({{36, 0x1800}});
    scheduler.advance(std::chrono::milliseconds(0));
    EXPECT_THAT(center->failed(), ElementsAre(maximize));
    EXPECT_THAT(press(row(clipboardShelf).defaultShortcut), ElementsAre(clipboardShelf));
    center->suspend();
    keys.changeKeyboard({});
    scheduler.advance(std::chrono::milliseconds(0));
    EXPECT_THAT(keys.registered(), IsEmpty()) << "a recorder listens";
    center->resume();
    EXPECT_THAT(center->failed(), IsEmpty());
}

TEST_F(HotKeyCenterTest, resumingRegistersTheActionsWithHandlersOnly) {
    handle(snapLeft);
    handle(clipboardShelf);
    center->resetAll();
    EXPECT_EQ(keys.registered().size(), 11U);
    center->suspend();
    EXPECT_THAT(keys.registered(), IsEmpty());
    center->resume();
    EXPECT_THAT(keys.registered(), ElementsAre(1, 10));
}

} // namespace quillet
