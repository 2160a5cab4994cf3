#include "settings/Sounds.h"

#include <QCoreApplication>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 copyThrottle = 800; // milliseconds

struct EventRow {
    QString rawValue;
    QString defaultSound;
    const char* title;
    const char* description;
};

const EventRow& row(Sounds::Event event) {
    static const std::array<EventRow, Sounds::events.size()> rows{{
        {u"copy"_s, u"Tink"_s, QT_TRANSLATE_NOOP("Sounds", "Copy"),
         QT_TRANSLATE_NOOP("Sounds", "When something new lands in clipboard history")},
        {u"paste"_s, u"Pop"_s, QT_TRANSLATE_NOOP("Sounds", "Paste from history"),
         QT_TRANSLATE_NOOP("Sounds", "When you paste an item from the shelf")},
        {u"capture"_s, u"Shutter"_s, QT_TRANSLATE_NOOP("Sounds", "Screenshot"),
         QT_TRANSLATE_NOOP("Sounds", "When a screenshot is taken")},
    }};
    return rows.at(static_cast<std::size_t>(event));
}

} // namespace

QString Sounds::rawValue(Event event) {
    return row(event).rawValue;
}

QString Sounds::title(Event event) {
    return QCoreApplication::translate("Sounds", row(event).title);
}

QString Sounds::description(Event event) {
    return QCoreApplication::translate("Sounds", row(event).description);
}

const QStringList& Sounds::choices() {
    static const QStringList names{u"None"_s,   u"Shutter"_s, u"Tink"_s,     u"Pop"_s,   u"Morse"_s,
                                   u"Bottle"_s, u"Purr"_s,    u"Frog"_s,     u"Glass"_s, u"Ping"_s,
                                   u"Blow"_s,   u"Hero"_s,    u"Submarine"_s};
    return names;
}

PreferenceKey<bool> Sounds::enabledKey() {
    return {u"sounds.enabled"_s, true};
}

PreferenceKey<double> Sounds::volumeKey() {
    return {u"sounds.volume"_s, 0.6};
}

PreferenceKey<QString> Sounds::soundKey(Event event) {
    return {u"sounds."_s + row(event).rawValue, row(event).defaultSound};
}

Sounds::Sounds(Preferences& preferences, SoundPlayer& player, const Scheduler& scheduler)
    : m_preferences(preferences), m_player(player), m_scheduler(scheduler) {}

void Sounds::registerDefaults() {
    m_preferences.registerDefault(enabledKey());
    m_preferences.registerDefault(volumeKey());
    for (const Event event : events)
        m_preferences.registerDefault(soundKey(event));
}

void Sounds::play(Event event) {
    if (!m_preferences.value(enabledKey()))
        return;
    const QDateTime now = m_scheduler.now();
    if (event == Event::copy && m_lastPlayed) {
        // A clock that was set back must not mute copies until it has caught up.
        const qint64 passed = m_lastPlayed->msecsTo(now);
        if (passed >= 0 && passed < copyThrottle)
            return;
    }
    m_lastPlayed = now;
    preview(sound(event));
}

void Sounds::preview(const QString& name) {
    if (name == u"None"_s)
        return;
    Sound* sound = load(name);
    if (!sound)
        return;
    sound->setVolume(m_preferences.value(volumeKey()));
    if (sound->isPlaying())
        sound->stop();
    sound->play();
}

QString Sounds::sound(Event event) const {
    const PreferenceKey<QString> key = soundKey(event);
    const QString name = m_preferences.value(key);
    return name.isNull() ? key.fallback : name;
}

Sound* Sounds::load(const QString& name) {
    if (const auto cached = m_cache.find(name); cached != m_cache.end())
        return cached->second.get();
    std::unique_ptr<Sound> sound;
    if (name == u"Shutter"_s) {
        sound = m_player.screenCaptureSound();
        if (!sound)
            sound = m_player.alertSound(u"Tink"_s);
    } else {
        sound = m_player.alertSound(name);
    }
    if (!sound)
        return nullptr;
    return m_cache.emplace(name, std::move(sound)).first->second.get();
}

} // namespace quillet
