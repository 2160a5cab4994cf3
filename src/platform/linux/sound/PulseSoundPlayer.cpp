#include "platform/linux/sound/PulseSoundPlayer.h"

#include "platform/linux/sound/PulsePlayback.h"
#include "platform/linux/sound/Wave.h"

#include <algorithm>
#include <QResource>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

/// The samples are read where the program file has them.
class PulseSound : public Sound {
public:
    explicit PulseSound(std::span<const qint16> samples) : m_samples(samples) {}

    void setVolume(double volume) override { m_volume = std::clamp(volume, 0.0, 1.0); }
    bool isPlaying() const override { return m_playback && m_playback->isRunning(); }
    void stop() override { m_playback.reset(); }

    void play() override {
        stop();
        m_playback = std::make_unique<PulsePlayback>(m_samples, m_volume);
    }

private:
    std::span<const qint16> m_samples;
    double m_volume = 1;
    std::unique_ptr<PulsePlayback> m_playback;
};

std::unique_ptr<Sound> soundInResource(const QString& path) {
    const QResource resource(path);
    const auto samples = waveSamples(
        QByteArrayView(reinterpret_cast<const char*>(resource.data()), resource.size()));
    return samples ? std::make_unique<PulseSound>(*samples) : nullptr;
}

} // namespace

std::unique_ptr<Sound> PulseSoundPlayer::alertSound(const QString& name) {
    if (name.contains(u'/') || name == u"Shutter"_s)
        return nullptr;
    return soundInResource(u":/sounds/%1.wav"_s.arg(name));
}

std::unique_ptr<Sound> PulseSoundPlayer::screenCaptureSound() {
    return soundInResource(u":/sounds/Shutter.wav"_s);
}

} // namespace quillet
