#pragma once

#include "platform/Alive.h"
#include "platform/Commands.h"
#include "platform/DesktopSettings.h"
#include "platform/linux/dbus/DesktopTable.h"
#include "platform/linux/dbus/SettingsPortal.h"
#include "platform/Preferences.h"
#include "platform/Scheduler.h"

#include <array>
#include <deque>
#include <optional>

namespace quillet {

/// The settings of a Linux desktop. What all programs are to follow comes from the desktop's portal
/// or, where that does not know, from the desktop's own programs. These also read and write the
/// rest, one after the other in the background, for the appearance before the file manager; the
/// desktop's table says how they are called.
class LinuxDesktopSettings : public DesktopSettings {
public:
    struct Surroundings {
        QString currentDesktop; ///< XDG_CURRENT_DESKTOP
        QString configFolder;
        QString dataFolder;
        QStringList folders; ///< those with all the data, and the user's own

        static Surroundings standard();
    };

    LinuxDesktopSettings(const QDBusConnection& session, Commands& commands, Scheduler& scheduler,
                         Preferences& preferences,
                         Surroundings surroundings = Surroundings::standard());

    bool isDark() const override { return m_isDark; }
    bool isMotionReduced() const override { return m_prefersLessMotion || m_animationsAreOff; }
    void makeDark(bool dark, Completion completion) override;
    QVariant fileManagerValue(FileManagerKey key) const override;
    void setFileManagerValue(FileManagerKey key, bool value) override;
    QString cause(FileManagerKey key) const override;
    void refresh(std::function<void()> task) override;
    void retry() override;
    void openSettings() override;

private:
    struct FileManagerSetting {
        std::vector<DesktopSwitch> known; ///< with what was found in them
        QString whyNone;
        std::vector<DesktopSwitch> places = known; ///< those that may be there
        std::optional<bool> value{};
        int timesSet = 0;       ///< from here; what an earlier reading says then comes too late
        bool isUnknown = false; ///< whether there are more places
    };
    using Done = std::function<void(const CommandResult&)>;

    const FileManagerSetting& setting(FileManagerKey key) const {
        return m_fileManager[std::size_t(key)];
    }
    FileManagerSetting& setting(FileManagerKey key) { return m_fileManager[std::size_t(key)]; }

    void readPortal();
    void note(const SettingsPortal::Name& name, const QVariant& value);
    void readDarkAgain(std::function<void(bool dark)> done);
    void readDarkFromPrograms(std::function<void(bool dark)> done);
    void noteLook(std::size_t index, const CommandResult& reading,
                  const std::function<void(bool dark)>& done);
    void noteDark(bool dark);
    void noteRead();
    void readFileManager(FileManagerKey key);
    void setLook(const DesktopLook& look, bool dark, const CommandResult& found,
                 std::function<void(bool isSo)> done);
    static PreferenceKey<QStringList> pairKey(const DesktopLook& look);
    std::optional<LookPair> lastPair(const DesktopLook& look) const;
    void keepPair(const DesktopLook& look, const LookPair& pair);

    enum class Queue { appearance, fileManager };

    /// Runs a program after those that wait in the same queue.
    void run(Queue queue, const QString& commandLine, Done done);

    /// Before those, from within what another one's end calls.
    void runAtOnce(Queue queue, const QStringList& words, Done done);
    void runNext();
    QStringList words(const QString& commandLine) const;
    void assign(bool& field, bool value);

    struct Call {
        QStringList words;
        Done done;
    };
    std::deque<Call>& calls(Queue queue) { return m_calls[std::size_t(queue)]; }

    Commands& m_commands;
    Scheduler& m_scheduler;
    Preferences& m_preferences;
    Surroundings m_surroundings;
    Desktop m_desktop;
    std::array<FileManagerSetting, 2> m_fileManager;
    bool m_isDark = false;
    bool m_prefersLessMotion = false;
    bool m_animationsAreOff = false;
    int m_toggles = 0;                ///< under way; meanwhile isDark() is what is wanted
    std::shared_ptr<bool> m_isOwnSet; ///< whether the desktop's own look is as wanted last
    SettingsPortal m_portal;
    QDBusServiceWatcher m_iconsWatcher;
    std::unique_ptr<Timer> m_secondLook;     ///< at what came of the last toggle
    int m_portalsWord = 0;                   ///< counts what it said of the appearance
    std::array<std::deque<Call>, 2> m_calls; ///< that wait for the one that runs, by their queue
    bool m_isRunning = false;
    bool m_isDarkKnown = false;
    int m_unread = 1; ///< readings that are under way, the first one of the appearance
    std::vector<std::function<void()>> m_waiting;
    Alive m_alive;
};

} // namespace quillet
