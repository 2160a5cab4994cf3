#include "platform/memory/MemorySoundPlayer.h"

namespace quillet {

using namespace Qt::StringLiterals;

class MemorySoundPlayer::Recording : public Sound {
public:
    Recording(MemorySoundPlayer& player, const QString& name) : m_player(player), m_name(name) {}

    ~Recording() override { stop(); }

    void setVolume(double volume) override { m_volume = volume; }

    bool isPlaying() const override {
        return m_start.isValid() && m_start.msecsTo(m_player.m_scheduler.now()) < 500;
    }

    void stop() override {
        if (isPlaying())
            m_player.stops.append(m_name);
        m_start = {};
    }

    void play() override {
        m_start = m_player.m_scheduler.now();
        m_player.plays.push_back({m_name, m_volume});
    }

private:
    MemorySoundPlayer& m_player;
    QString m_name;
    double m_volume = 1;
    QDateTime m_start;
};

MemorySoundPlayer::MemorySoundPlayer(const Scheduler& scheduler)
    : alerts{u"Tink"_s,  u"Pop"_s,  u"Morse"_s, u"Bottle"_s, u"Purr"_s,     u"Frog"_s,
             u"Glass"_s, u"Ping"_s, u"Blow"_s,  u"Hero"_s,   u"Submarine"_s},
      m_scheduler(scheduler) {}

std::unique_ptr<Sound> MemorySoundPlayer::alertSound(const QString& name) {
    return alerts.contains(name) ? load(name) : nullptr;
}

std::unique_ptr<Sound> MemorySoundPlayer::screenCaptureSound() {
    return hasShutter ? load(u"Shutter"_s) : nullptr;
}

std::unique_ptr<Sound> MemorySoundPlayer::load(const QString& name) {
    loaded.append(name);
    return std::make_unique<Recording>(*this, name);
}

} // namespace quillet
