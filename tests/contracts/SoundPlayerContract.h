#pragma once

#include "platform/SoundPlayer.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every SoundPlayer promises, with a sound device or without. A Backend has `player()`.
template<typename Backend>
class SoundPlayerContract : public testing::Test {
protected:
    Backend backend;
};

TYPED_TEST_SUITE_P(SoundPlayerContract);

TYPED_TEST_P(SoundPlayerContract, theAlertsAndTheShutterCanBePlayedAndNothingElse) {
    SoundPlayer& player = this->backend.player();
    for (const char* name : {"Tink", "Pop", "Morse", "Bottle", "Purr", "Frog", "Glass", "Ping",
                             "Blow", "Hero", "Submarine"}) {
        const auto sound = player.alertSound(QString::fromLatin1(name));
        ASSERT_TRUE(sound) << name;
        EXPECT_FALSE(sound->isPlaying());
        sound->play();
        sound->play();
        sound->stop();
        EXPECT_FALSE(sound->isPlaying());
    }
    player.screenCaptureSound()->play(); // and is dropped meanwhile
    for (const char* name : {"Shutter", "None", "tink", "", "../sounds/Tink", "Tink.wav"})
        EXPECT_FALSE(player.alertSound(QString::fromLatin1(name))) << name;
}

REGISTER_TYPED_TEST_SUITE_P(SoundPlayerContract, theAlertsAndTheShutterCanBePlayedAndNothingElse);

} // namespace quillet
