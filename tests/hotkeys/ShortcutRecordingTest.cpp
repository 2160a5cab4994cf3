#include "hotkeys/ShortcutRecording.h"
#include "hotkeys/HotKeyWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace ModifierFlag;
using enum HotKeyAction;
using testing::ElementsAre;
using testing::IsEmpty;

class ShortcutRecordingTest : public testing::Test, protected HotKeyWorld {
protected:
    ShortcutRecordingTest() {
        handle(captureScreen);
        recording->start();
    }

    std::optional<ShortcutRecording> recording{std::in_place, *center, captureScreen};
};

TEST_F(ShortcutRecordingTest, aRefusedKeySaysWhyAndRecordingGoesOn) {
    EXPECT_EQ(recording->label(), u"Press keys…"_s);
    EXPECT_THAT(keys.registered(), IsEmpty());
    EXPECT_TRUE(recording->handle({0, shift, u"a"_s}));
    EXPECT_EQ(recording->note(), u"Include ⌘, ⌥ or ⌃"_s);
    EXPECT_TRUE(recording->handle({19, shift | command, u"@"_s}));
    EXPECT_EQ(recording->note(), u"Already used for capture area (space: window)"_s);
    EXPECT_TRUE(recording->isRecording());
    EXPECT_TRUE(recording->handle({53, command, {}}));
    EXPECT_EQ(recording->note(), std::nullopt);
    EXPECT_EQ(recording->label(), u"⇧⌘1"_s);
    EXPECT_THAT(keys.registered(), ElementsAre(3));
    recording->start();
    recording.reset();
    EXPECT_THAT(keys.registered(), ElementsAre(3)) << "shortcuts come back when the recording dies";
}

TEST_F(ShortcutRecordingTest, anAcceptedShortcutIsInForceAndMayLeaveAWarning) {
    recording->handle({18, shift | command, u"!"_s});
    EXPECT_FALSE(recording->isRecording()) << "its own present shortcut is no conflict";
    recording->start();
    recording->handle({21, shift | command, u"$"_s});
    EXPECT_EQ(recording->label(), u"⇧⌘4"_s);
    EXPECT_EQ(recording->note(), u"macOS uses this for its own screenshots"_s);
    EXPECT_THAT(press(center->shortcut(captureScreen)), ElementsAre(captureScreen));
    keys.taken = {{21, 0x900}};
    recording->start();
    recording->handle({21, option | command, u"4"_s});
    EXPECT_EQ(recording->note(), u"Another app is using this shortcut"_s);
}

} // namespace quillet
