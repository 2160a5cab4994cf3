#pragma once

#include "platform/DesktopSettings.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every DesktopSettings promises. A Backend has `desktop()`, `showsHiddenFiles()` as the
/// desktop has it stored, `setDarkElsewhere(dark)` and `waitFor(condition)`. It begins light, with
/// nothing known of hidden files and with icons that cannot be changed.
template<typename Backend>
class DesktopSettingsContract : public testing::Test {
protected:
    Backend backend;
};

TYPED_TEST_SUITE_P(DesktopSettingsContract);

TYPED_TEST_P(DesktopSettingsContract, whatIsSetReadsBackAtOnceAndReachesTheDesktopInOrder) {
    using Key = DesktopSettings::FileManagerKey;
    DesktopSettings& desktop = this->backend.desktop();
    ASSERT_TRUE(
        this->backend.waitFor([&] { return !desktop.cause(Key::createDesktop).isEmpty(); }));
    EXPECT_EQ(desktop.cause(Key::showAllFiles), QString());
    for (const bool shown : {true, false, true}) {
        desktop.setFileManagerValue(Key::showAllFiles, shown);
        EXPECT_EQ(desktop.fileManagerValue(Key::showAllFiles), QVariant(shown));
    }
    EXPECT_TRUE(this->backend.waitFor([&] { return this->backend.showsHiddenFiles(); }));
    desktop.setFileManagerValue(Key::showAllFiles, false);
    EXPECT_TRUE(this->backend.waitFor([&] { return !this->backend.showsHiddenFiles(); }));
}

TYPED_TEST_P(DesktopSettingsContract, aToggleIsToldOnceAndObserversHearOfWhatOthersChange) {
    DesktopSettings& desktop = this->backend.desktop();
    for (const bool dark : {true, false}) {
        int told = 0;
        desktop.makeDark(dark, [&](bool done) {
            ++told;
            EXPECT_TRUE(done);
            EXPECT_EQ(desktop.isDark(), dark);
        });
        EXPECT_TRUE(this->backend.waitFor([&] { return told > 0; }));
        EXPECT_EQ(told, 1);
    }
    bool heard = false;
    auto observation = desktop.observe([&] { heard = desktop.isDark(); });
    this->backend.setDarkElsewhere(true);
    EXPECT_TRUE(this->backend.waitFor([&] { return heard; }));
    observation.reset();
    this->backend.setDarkElsewhere(false);
    EXPECT_TRUE(this->backend.waitFor([&] { return !desktop.isDark(); }));
    EXPECT_TRUE(heard);
}

REGISTER_TYPED_TEST_SUITE_P(DesktopSettingsContract,
                            whatIsSetReadsBackAtOnceAndReachesTheDesktopInOrder,
                            aToggleIsToldOnceAndObserversHearOfWhatOthersChange);

} // namespace quillet
