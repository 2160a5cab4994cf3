#pragma once

#include "platform/Preferences.h"
#include "platform/Scheduler.h"
#include "platform/SoundPlayer.h"

#include <array>
#include <map>
#include <optional>

namespace quillet {

/// Short audible feedback for what happens to the clipboard and the screen. One user-chosen sound
/// for each event, one volume and one switch for all of them, all kept in the preferences. Loads a
/// sound when it is first played and keeps it for the run.
class Sounds {
public:
    enum class Event { copy, paste, capture };

    static constexpr std::array events{Event::copy, Event::paste, Event::capture};
    static QString rawValue(Event event);
    static QString title(Event event);       ///< as the settings show it
    static QString description(Event event); ///< when it is heard, in a sentence

    /// The sounds to choose from, in the order they are offered. "None" is silence.
    static const QStringList& choices();

    static PreferenceKey<bool> enabledKey();
    static PreferenceKey<double> volumeKey();
    static PreferenceKey<QString> soundKey(Event event);

    Sounds(Preferences& preferences, SoundPlayer& player, const Scheduler& scheduler);

    /// To be called once, before anything plays.
    void registerDefaults();

    /// Plays the user's sound for an event. A copy makes no sound shortly after any other event,
    /// so that one action that also copies is heard once.
    void play(Event event);

    /// Plays a sound at the current volume whether or not sounds are switched on.
    void preview(const QString& name);

    /// The name of the sound the user chose for an event.
    QString sound(Event event) const;

private:
    Sound* load(const QString& name);

    Preferences& m_preferences;
    SoundPlayer& m_player;
    const Scheduler& m_scheduler;
    std::map<QString, std::unique_ptr<Sound>> m_cache;
    std::optional<QDateTime> m_lastPlayed;
};

} // namespace quillet
