#pragma once

#include <memory>
#include <QString>

namespace quillet {

/// One loaded sound. Destroying it silences it.
class Sound {
public:
    virtual ~Sound() = default;
    virtual void setVolume(double volume) = 0; ///< 0 … 1, linear; takes effect at the next play()
    virtual bool isPlaying() const = 0;
    virtual void stop() = 0;
    virtual void play() = 0; ///< from the start; returns at once; silent without a device
};

/// The system's sounds.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    /// A private copy of the alert sound of this name; null when there is none.
    virtual std::unique_ptr<Sound> alertSound(const QString& name) = 0;

    /// The sound of a camera shutter; null when it is missing.
    virtual std::unique_ptr<Sound> screenCaptureSound() = 0;
};

} // namespace quillet
