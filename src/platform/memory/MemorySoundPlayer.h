#pragma once

#include "platform/Scheduler.h"
#include "platform/SoundPlayer.h"

#include <QStringList>
#include <vector>

namespace quillet {

/// Remembers what would have been heard. Every sound lasts half a second of its scheduler's time.
class MemorySoundPlayer : public SoundPlayer {
public:
    struct Play {
        QString name;
        double volume = 0;
        bool operator==(const Play&) const = default;
    };

    explicit MemorySoundPlayer(const Scheduler& scheduler);

    std::unique_ptr<Sound> alertSound(const QString& name) override;
    std::unique_ptr<Sound> screenCaptureSound() override;

    /// The alert sounds that exist, and whether the shutter does.
    QStringList alerts;
    bool hasShutter = true;

    QStringList loaded;      ///< names of the sounds handed out; the shutter's is "Shutter"
    std::vector<Play> plays; ///< every start
    QStringList stops;       ///< sounds cut short, by stop() or by destruction

private:
    class Recording;

    std::unique_ptr<Sound> load(const QString& name);

    const Scheduler& m_scheduler;
};

} // namespace quillet
