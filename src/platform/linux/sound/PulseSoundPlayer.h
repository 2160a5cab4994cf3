#pragma once

#include "platform/SoundPlayer.h"

namespace quillet {

/// Plays the sounds built into the program through the PulseAudio protocol, which PipeWire speaks
/// too. Holds no connection and no thread while nothing plays.
class PulseSoundPlayer : public SoundPlayer {
public:
    std::unique_ptr<Sound> alertSound(const QString& name) override;
    std::unique_ptr<Sound> screenCaptureSound() override;
};

} // namespace quillet
