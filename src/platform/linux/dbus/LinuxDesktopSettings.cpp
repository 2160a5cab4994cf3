#include "platform/linux/dbus/LinuxDesktopSettings.h"

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

/// With what is there, where that is to come back.
DesktopSwitch asFound(DesktopSwitch place, const CommandResult& reading) {
    if (place.hasKinds && isOn(place, reading)) {
        QStringList words = place.setOn.split(u' ');
        words.last() = QString::fromUtf8(reading.output).trimmed();
        place.setOn = words.join(u' ');
    }
    return place;
}

/// Some programs put a text between quotes.
QString themeName(const CommandResult& reading) {
    QString name = QString::fromUtf8(reading.output).trimmed();
    if (name.startsWith(u'\'') && name.endsWith(u'\'') && name.size() > 1)
        name = name.mid(1, name.size() - 2);
    return name;
}

} // namespace

LinuxDesktopSettings::Surroundings LinuxDesktopSettings::Surroundings::standard() {
    QStringList themeFolders{QDir::homePath() + u"/.themes"_s};
    for (const QString& folder :
         QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        themeFolders.append(folder + u"/themes"_s);
    return {qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation), themeFolders};
}

LinuxDesktopSettings::LinuxDesktopSettings(const QDBusConnection& session, Commands& commands,
                                           Surroundings surroundings)
    : m_commands(commands),
      m_surroundings(std::move(surroundings)),
      m_desktop(desktopNamed(m_surroundings.currentDesktop)),
      m_fileManager{{{m_desktop.icons, m_desktop.whyNoIcons},
                     {m_desktop.hiddenFiles, m_desktop.whyNoHiddenFiles}}},
      m_portal(session) {
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
        if (const auto preferred = isDarkPreferred(value))
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
        m_portal.read(colorScheme, [programsDark, done](const std::optional<QVariant>& value) {
            done(isDarkPreferred(value.value_or(QVariant())).value_or(programsDark));
        });
    });
}

void LinuxDesktopSettings::readDarkFromPrograms(std::function<void(bool dark)> done) {
    const auto dark = std::make_shared<bool>(false);
    for (const DesktopSwitch& place : m_desktop.dark)
        run(Queue::appearance, place.read,
            [dark, place](const auto& reading) { *dark |= isOn(place, reading); });
    run(Queue::appearance, m_desktop.themes.front().read,
        [dark, done = std::move(done)](const auto& reading) {
            done(*dark || isDarkTheme(themeName(reading)));
        });
}

void LinuxDesktopSettings::toggleDark(Completion completion) {
    const bool dark = !m_isDark;
    const auto succeeded = std::make_shared<bool>(false);
    const auto note = [succeeded](const CommandResult& end) { *succeeded |= end.exitCode == 0; };
    for (const DesktopSwitch& place : m_desktop.dark) {
        if (const QString& set = dark ? place.setOn : place.setOff; !set.isEmpty())
            run(Queue::appearance, set, note);
    }
    for (const DesktopTheme& used : m_desktop.themes)
        setTheme(used, dark, note);
    readDarkAgain([this, succeeded, completion = std::move(completion)](bool isDark) {
        --m_toggles;
        noteDark(isDark);
        completion(*succeeded);
    });
    ++m_toggles;
    assign(m_isDark, dark);
}

/// While toggles are under way, what is read is passing.
void LinuxDesktopSettings::noteDark(bool dark) {
    if (m_toggles > 0)
        return;
    assign(m_isDark, dark);
    if (!std::exchange(m_isDarkKnown, true))
        noteKnown();
}

void LinuxDesktopSettings::noteKnown() {
    if (--m_unknown > 0)
        return;
    for (const auto& task : std::exchange(m_waiting, {}))
        task();
}

void LinuxDesktopSettings::whenKnown(std::function<void()> task) {
    if (m_unknown == 0)
        task();
    else
        m_waiting.push_back(std::move(task));
}

void LinuxDesktopSettings::setTheme(const DesktopTheme& used, bool dark, Done done) {
    run(Queue::appearance, used.read, [this, used, dark, done](const CommandResult& reading) {
        const QString name = themeName(reading);
        const QString wanted = themeFor(dark, name, m_surroundings.themeFolders);
        if (reading.exitCode == 0 && wanted != name)
            calls(Queue::appearance).push_front({words(used.set) << wanted, done});
    });
}

void LinuxDesktopSettings::readFileManager(FileManagerKey key) {
    struct Found {
        std::vector<DesktopSwitch> places;
        std::optional<bool> value;
        std::size_t unread;
    };
    const auto found = std::make_shared<Found>(Found{{}, {}, setting(key).places.size()});
    m_unknown += found->unread > 0;
    for (const DesktopSwitch& place : setting(key).places) {
        run(Queue::fileManager, place.read, [this, key, place, found](const auto& reading) {
            if (isThere(place, reading))
                found->places.push_back(asFound(place, reading));
            if (reading.exitCode == 0 && !found->value)
                found->value = isOn(place, reading);
            if (--found->unread > 0)
                return;
            FileManagerSetting& read = setting(key);
            read.places = found->places;
            if (!read.isSet)
                read.value = found->value;
            notify();
            noteKnown();
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
    changed.isSet = true;
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
    const QString known = setting(key).whyNone;
    return known.isEmpty() ? u"The desktop's setting for this is not installed."_s : known;
}

void LinuxDesktopSettings::openSettings() {
    const auto program = settingsProgram(m_surroundings.currentDesktop);
    if (!program || !m_commands.launch(*program, {}))
        qCWarning(logDesktop, "this desktop has no settings program that is known here");
}

QStringList LinuxDesktopSettings::words(const QString& commandLine) const {
    return commandLine.split(u' ').replaceInStrings(u"$DATA"_s, m_surroundings.dataFolder);
}

void LinuxDesktopSettings::run(Queue queue, const QString& commandLine, Done done) {
    calls(queue).push_back({words(commandLine), std::move(done)});
    runNext();
}

void LinuxDesktopSettings::runNext() {
    const auto waiting = std::ranges::find_if_not(m_calls, &std::deque<Call>::empty);
    if (m_isRunning || waiting == m_calls.end())
        return;
    m_isRunning = true;
    const Call next = waiting->front();
    waiting->pop_front();
    m_commands.run(next.words.first(), next.words.mid(1),
                   m_alive([this, done = next.done](const CommandResult& result) {
                       m_isRunning = false;
                       done(result);
                       runNext();
                   }));
}

void LinuxDesktopSettings::assign(bool& field, bool value) {
    if (field == value)
        return;
    field = value;
    notify();
}

} // namespace quillet
