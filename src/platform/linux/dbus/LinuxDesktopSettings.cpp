#include "platform/linux/dbus/LinuxDesktopSettings.h"

#include "platform/linux/dbus/IniFile.h"
#include "platform/linux/SettingsProgram.h"

#include <algorithm>
#include <QDir>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace quillet {

Q_LOGGING_CATEGORY(logDesktop, "quillet.desktop", QtWarningMsg)

namespace {

const SettingsPortal::Name colorScheme{u"org.freedesktop.appearance"_s, u"color-scheme"_s};
const SettingsPortal::Name reducedMotion{u"org.freedesktop.appearance"_s, u"reduced-motion"_s};
const SettingsPortal::Name animations{u"org.gnome.desktop.interface"_s, u"enable-animations"_s};
const SettingsPortal::Name theme{u"org.gnome.desktop.interface"_s, u"gtk-theme"_s};

/// How long it may take until the portal tells what the programs have set.
constexpr std::chrono::milliseconds portalsDelay(100);

/// Absent where the portal leaves it open.
std::optional<bool> isDarkPreferred(const QVariant& colorSchemeValue) {
    switch (colorSchemeValue.toUInt()) {
    case 1:
        return true;
    case 2:
        return false;
    default:
        return std::nullopt;
    }
}

bool isOn(const DesktopSwitch& place, const CommandResult& reading) {
    const QRegularExpression on(QRegularExpression::anchoredPattern(place.isOn));
    return reading.exitCode == 0 &&
           on.match(QString::fromUtf8(reading.output).trimmed()).hasMatch();
}

bool isThere(const DesktopSwitch& place, const CommandResult& reading) {
    return reading.exitCode == 0 || (place.mayBeUnset && reading.exitCode > 0);
}

/// What is there is to come back.
void keepKind(DesktopSwitch& place, const CommandResult& reading) {
    if (!place.hasKinds || !isOn(place, reading))
        return;
    QStringList words = place.setOn.split(u' ');
    words.last() = QString::fromUtf8(reading.output).trimmed();
    place.setOn = words.join(u' ');
}

/// Some programs put a text between quotes.
QString lookName(const CommandResult& reading) {
    QString name = QString::fromUtf8(reading.output).trimmed();
    if (name.startsWith(u'\'') && name.endsWith(u'\'') && name.size() > 1)
        name = name.mid(1, name.size() - 2);
    return name;
}

} // namespace

LinuxDesktopSettings::Surroundings LinuxDesktopSettings::Surroundings::standard() {
    using Paths = QStandardPaths;
    QStringList folders = Paths::standardLocations(Paths::GenericDataLocation);
    folders.append(QDir::homePath());
    return {qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
            Paths::writableLocation(Paths::GenericConfigLocation),
            Paths::writableLocation(Paths::GenericDataLocation), folders};
}

LinuxDesktopSettings::LinuxDesktopSettings(const QDBusConnection& session, Commands& commands,
                                           Scheduler& scheduler, Preferences& preferences,
                                           Surroundings surroundings)
    : m_commands(commands),
      m_scheduler(scheduler),
      m_preferences(preferences),
      m_surroundings(std::move(surroundings)),
      m_desktop(desktopNamed(m_surroundings.currentDesktop)),
      m_fileManager{{{m_desktop.icons, m_desktop.whyNoIcons},
                     {m_desktop.hiddenFiles, m_desktop.whyNoHiddenFiles}}},
      m_portal(session) {
    m_iconsWatcher.setConnection(session);
    m_iconsWatcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    if (!m_desktop.iconsService.isEmpty())
        m_iconsWatcher.addWatchedService(m_desktop.iconsService);
    QObject::connect(&m_iconsWatcher, &QDBusServiceWatcher::serviceRegistered, &m_iconsWatcher,
                     [this] { readFileManager(FileManagerKey::createDesktop); });
    m_portal.onChanged = [this](const auto& name, const QVariant& value) { note(name, value); };
    m_portal.onAppeared = [this] { readPortal(); };
    readPortal();
    readFileManager(FileManagerKey::createDesktop);
    readFileManager(FileManagerKey::showAllFiles);
}

void LinuxDesktopSettings::readPortal() {
    m_portal.read(colorScheme, [this](const std::optional<QVariant>& value) {
        note(colorScheme, value.value_or(QVariant()));
    });
    m_portal.read(reducedMotion, [this](const std::optional<QVariant>& value) {
        if (value)
            note(reducedMotion, *value);
    });
    m_portal.read(animations, [this](const std::optional<QVariant>& value) {
        if (value)
            return note(animations, *value);
        run(Queue::appearance, u"gsettings get org.gnome.desktop.interface enable-animations"_s,
            [this](const CommandResult& reading) {
                note(animations, reading.output.trimmed() != "false");
            });
    });
}

void LinuxDesktopSettings::note(const SettingsPortal::Name& name, const QVariant& value) {
    if (name == reducedMotion) {
        assign(m_prefersLessMotion, value.toUInt() == 1);
    } else if (name == animations) {
        assign(m_animationsAreOff, !value.toBool());
    } else if (name == colorScheme) {
        const int word = ++m_portalsWord;
        const auto preferred = isDarkPreferred(value);
        if (preferred && m_desktop.isDarkByPortal)
            noteDark(*preferred);
        else
            readDarkFromPrograms([this, word](bool dark) {
                if (word == m_portalsWord)
                    noteDark(dark);
            });
    } else if (name == theme) {
        readPortal();
    }
}

/// The programs come first although the portal has the last word: they run after all that was set
/// before, and meanwhile the portal learns of it.
void LinuxDesktopSettings::readDarkAgain(std::function<void(bool dark)> done) {
    readDarkFromPrograms([this, done = std::move(done)](bool programsDark) {
        m_portal.read(colorScheme, [this, programsDark, done](const auto& value) {
            const auto preferred = isDarkPreferred(value.value_or(QVariant()));
            done(m_desktop.isDarkByPortal ? preferred.value_or(programsDark) : programsDark);
        });
    });
}

void LinuxDesktopSettings::readDarkFromPrograms(std::function<void(bool dark)> done) {
    run(Queue::appearance, m_desktop.looks.front().read,
        [this, done = std::move(done)](const auto& reading) { noteLook(0, reading, done); });
}

/// The first look that tells is the one that counts.
void LinuxDesktopSettings::noteLook(std::size_t index, const CommandResult& reading,
                                    const std::function<void(bool dark)>& done) {
    const auto dark = isDarkByName(m_desktop.looks[index], lookName(reading));
    if (reading.exitCode == 0 && dark)
        return done(*dark);
    if (++index == m_desktop.looks.size())
        return done(false);
    runAtOnce(Queue::appearance, words(m_desktop.looks[index].read),
              [this, index, done](const auto& next) { noteLook(index, next, done); });
}

void LinuxDesktopSettings::makeDark(bool dark, Completion completion) {
    // The desktop's own look comes first: programs are not to look as it does not. Where it is as
    // wanted, somebody may have chosen it by hand and only the programs be left to follow; where a
    // toggle under way wants the same, what comes of that one is not known yet.
    const bool isOwnLeft = m_isDark == dark;
    if (!isOwnLeft || m_toggles == 0)
        m_isOwnSet = std::make_shared<bool>(isOwnLeft);
    const auto isSet = m_isOwnSet;
    ++m_toggles;
    assign(m_isDark, dark);
    const DesktopLook* own = &m_desktop.looks.front();
    for (const DesktopLook& look : m_desktop.looks) {
        if (&look == own && isOwnLeft)
            continue;
        run(Queue::appearance, look.read, [this, &look, own, dark, isSet](const auto& reading) {
            if (&look == own)
                setLook(look, dark, reading, [isSet](bool isSo) { *isSet = isSo; });
            else if (*isSet)
                setLook(look, dark, reading, [](bool) {});
        });
    }
    readDarkAgain([this, dark, isSet, completion = std::move(completion)](bool isDark) {
        if (!*isSet)
            qCWarning(logDesktop, "the desktop's own theme cannot be made %s",
                      dark ? "dark" : "light");
        const auto end = [this, isSet, completion](bool isDarkNow) {
            --m_toggles;
            noteDark(isDarkNow);
            completion(*isSet);
        };
        if (isDark == dark || !*isSet || !m_desktop.isDarkByPortal || m_toggles > 1)
            return end(isDark);
        m_secondLook = m_scheduler.after(portalsDelay, [this, end] { readDarkAgain(end); });
    });
}

/// With what a reading of it has found. `done` is told whether it is as wanted.
void LinuxDesktopSettings::setLook(const DesktopLook& look, bool dark, const CommandResult& found,
                                   std::function<void(bool isSo)> done) {
    if (found.exitCode != 0)
        return done(false);
    const QString name = lookName(found);
    const QString wanted = nameFor(dark, name, look, lastPair(look), m_surroundings.folders);
    if (wanted == name)
        return done(isDarkByName(look, name).value_or(false) == dark);
    // Kept before it is set: who ends in between is to find the way back.
    const QStringList before = m_preferences.value(pairKey(look));
    keepPair(look, dark ? LookPair{name, wanted} : LookPair{wanted, name});
    runAtOnce(Queue::appearance, words(look.set) << wanted,
              [this, &look, before, done = std::move(done)](const auto& end) {
                  if (end.exitCode != 0)
                      m_preferences.set(pairKey(look), before);
                  done(end.exitCode == 0);
              });
}

PreferenceKey<QStringList> LinuxDesktopSettings::pairKey(const DesktopLook& look) {
    return {u"dark.pair: "_s + look.read, {}};
}

std::optional<LookPair> LinuxDesktopSettings::lastPair(const DesktopLook& look) const {
    const QStringList names = m_preferences.value(pairKey(look));
    return names.size() == 2 ? std::optional(LookPair{names[0], names[1]}) : std::nullopt;
}

/// A look that has no name can be put back only where that is as good as any.
void LinuxDesktopSettings::keepPair(const DesktopLook& look, const LookPair& pair) {
    if (!pair.light.isEmpty() || look.light.contains(pair.light))
        m_preferences.set(pairKey(look), {pair.light, pair.dark});
}

/// While toggles are under way, what is read is passing.
void LinuxDesktopSettings::noteDark(bool dark) {
    if (m_toggles > 0)
        return;
    assign(m_isDark, dark);
    if (!std::exchange(m_isDarkKnown, true))
        noteRead();
}

void LinuxDesktopSettings::noteRead() {
    if (--m_unread > 0)
        return;
    for (const auto& task : std::exchange(m_waiting, {}))
        task();
}

void LinuxDesktopSettings::refresh(std::function<void()> task) {
    m_waiting.push_back(std::move(task));
    if (m_unread > 0)
        return;
    ++m_unread;
    readDarkAgain([this](bool dark) {
        noteDark(dark);
        noteRead();
    });
    readFileManager(FileManagerKey::createDesktop);
    readFileManager(FileManagerKey::showAllFiles);
}

void LinuxDesktopSettings::retry() {
    if (m_unread > 0)
        return;
    for (const auto key : {FileManagerKey::createDesktop, FileManagerKey::showAllFiles}) {
        if (setting(key).isUnknown)
            readFileManager(key);
    }
}

void LinuxDesktopSettings::readFileManager(FileManagerKey key) {
    struct Found {
        std::size_t unread;
        int timesSet;
        std::vector<DesktopSwitch> places{};
        std::optional<bool> value{};
        bool isUnknown = false;
    };
    std::vector<DesktopSwitch>& known = setting(key).known;
    if (known.empty())
        return;
    ++m_unread;
    const auto found = std::make_shared<Found>(Found{known.size(), setting(key).timesSet});
    for (DesktopSwitch& place : known) {
        run(Queue::fileManager, place.read, [this, key, &place, found](const auto& reading) {
            keepKind(place, reading);
            found->isUnknown |= reading.tookTooLong;
            if (isThere(place, reading))
                found->places.push_back(place);
            if (reading.exitCode == 0 && !found->value)
                found->value = isOn(place, reading);
            if (--found->unread > 0)
                return;
            FileManagerSetting& read = setting(key);
            read.isUnknown = found->isUnknown;
            read.places = found->places;
            if (read.timesSet == found->timesSet)
                read.value = found->value;
            notify();
            noteRead();
        });
    }
}

QVariant LinuxDesktopSettings::fileManagerValue(FileManagerKey key) const {
    const std::optional<bool> value = setting(key).value;
    return value ? QVariant(*value) : QVariant();
}

void LinuxDesktopSettings::setFileManagerValue(FileManagerKey key, bool value) {
    FileManagerSetting& changed = setting(key);
    changed.value = value;
    ++changed.timesSet;
    // File managers follow by themselves, if only in their next window. Nothing that they would
    // have to be restarted for is worth the windows that are open.
    struct Tally {
        std::size_t running;
        bool succeeded = false;
    };
    const auto tally = std::make_shared<Tally>(Tally{changed.places.size()});
    for (const DesktopSwitch& place : changed.places) {
        run(Queue::fileManager, value ? place.setOn : place.setOff, [tally](const auto& end) {
            tally->succeeded |= end.exitCode == 0;
            if (--tally->running == 0 && !tally->succeeded)
                qCWarning(logDesktop, "the file manager's setting could not be stored");
        });
    }
}

QString LinuxDesktopSettings::cause(FileManagerKey key) const {
    if (!setting(key).places.empty())
        return {};
    if (setting(key).isUnknown)
        return u"The desktop takes too long to tell."_s;
    const QString known = setting(key).whyNone;
    return known.isEmpty() ? u"The desktop's setting for this is not installed."_s : known;
}

void LinuxDesktopSettings::openSettings() {
    const auto program = settingsProgram(m_surroundings.currentDesktop);
    if (!program || !m_commands.launch(*program, {}))
        qCWarning(logDesktop, "this desktop has no settings program that is known here");
}

QStringList LinuxDesktopSettings::words(const QString& commandLine) const {
    return commandLine.split(u' ')
        .replaceInStrings(u"$CONFIG"_s, m_surroundings.configFolder)
        .replaceInStrings(u"$DATA"_s, m_surroundings.dataFolder);
}

void LinuxDesktopSettings::run(Queue queue, const QString& commandLine, Done done) {
    calls(queue).push_back({words(commandLine), std::move(done)});
    runNext();
}

void LinuxDesktopSettings::runAtOnce(Queue queue, const QStringList& words, Done done) {
    calls(queue).push_front({words, std::move(done)});
}

void LinuxDesktopSettings::runNext() {
    const auto waiting = std::ranges::find_if_not(m_calls, &std::deque<Call>::empty);
    if (m_isRunning || waiting == m_calls.end())
        return;
    m_isRunning = true;
    const Call next = waiting->front();
    waiting->pop_front();
    const auto finish = [this, done = next.done](const CommandResult& result) {
        m_isRunning = false;
        done(result);
        runNext();
    };
    const QString& program = next.words.first();
    const QStringList arguments = next.words.mid(1);
    if (program != "ini"_L1)
        return m_commands.run(program, arguments, m_alive(finish));
    const auto result = std::make_shared<CommandResult>();
    m_scheduler.background([arguments, result] { *result = runIni(arguments); },
                           m_alive([finish, result] { finish(*result); }));
}

void LinuxDesktopSettings::assign(bool& field, bool value) {
    if (field == value)
        return;
    field = value;
    notify();
}

} // namespace quillet
