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

TYPED_TEST_P(SoundPlayerContract, theAlertsAndTheShutterExistAndNothingElse) {
    SoundPlayer& player = this->backend.player();
    for (const char* name : {"Tink", "Pop", "Morse", "Bottle", "Purr", "Frog", "Glass", "Ping",
                             "Blow", "Hero", "Submarine"})
        EXPECT_TRUE(player.alertSound(QString::fromLatin1(name))) << name;
    EXPECT_TRUE(player.screenCaptureSound());
    for (const char* name : {"Shutter", "None", "tink", "", "../sounds/Tink", "Tink.wav"})
        EXPECT_FALSE(player.alertSound(QString::fromLatin1(name))) << name;
}

TYPED_TEST_P(SoundPlayerContract, aSoundThatIsStoppedRestartedOrDroppedIsSilent) {
    const auto sound = this->backend.player().alertSound(QStringLiteral("Glass"));
    EXPECT_FALSE(sound->isPlaying());
    sound->stop();
    sound->setVolume(0.1);
    sound->play();
    sound->play();
    sound->stop();
    EXPECT_FALSE(sound->isPlaying());
    const auto dropped = this->backend.player().screenCaptureSound();
    dropped->play();
}

REGISTER_TYPED_TEST_SUITE_P(SoundPlayerContract, theAlertsAndTheShutterExistAndNothingElse,
                            aSoundThatIsStoppedRestartedOrDroppedIsSilent);

} // namespace quillet
