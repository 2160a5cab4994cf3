#pragma once

#include "platform/Alive.h"
#include "platform/Commands.h"
#include "platform/DesktopSettings.h"
#include "platform/linux/dbus/DesktopTable.h"
#include "platform/linux/dbus/SettingsPortal.h"

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
        QString dataFolder;
        QStringList themeFolders;

        static Surroundings standard();
    };

    LinuxDesktopSettings(const QDBusConnection& session, Commands& commands,
                         Surroundings surroundings = Surroundings::standard());

    bool isDark() const override { return m_isDark; }
    bool isMotionReduced() const override { return m_prefersLessMotion || m_animationsAreOff; }
    void toggleDark(Completion completion) override;
    QVariant fileManagerValue(FileManagerKey key) const override;
    void setFileManagerValue(FileManagerKey key, bool value) override;
    QString cause(FileManagerKey key) const override;
    void whenKnown(std::function<void()> task) override;
    void openSettings() override;

private:
    struct FileManagerSetting {
        std::vector<DesktopSwitch> places; ///< those that may be there
        QString whyNone;
        std::optional<bool> value{};
        bool isSet = false; ///< from here; what a reading then says comes too late
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
    void noteDark(bool dark);
    void noteKnown();
    void readFileManager(FileManagerKey key);
    void setTheme(const DesktopTheme& theme, bool dark, Done done);

    enum class Queue { appearance, fileManager };

    /// Runs a program after those that wait in the same queue.
    void run(Queue queue, const QString& commandLine, Done done);
    void runNext();
    QStringList words(const QString& commandLine) const;
    void assign(bool& field, bool value);

    struct Call {
        QStringList words;
        Done done;
    };
    std::deque<Call>& calls(Queue queue) { return m_calls[std::size_t(queue)]; }

    Commands& m_commands;
    Surroundings m_surroundings;
    Desktop m_desktop;
    std::array<FileManagerSetting, 2> m_fileManager;
    bool m_isDark = false;
    bool m_prefersLessMotion = false;
    bool m_animationsAreOff = false;
    int m_toggles = 0; ///< under way; meanwhile isDark() is what is wanted
    SettingsPortal m_portal;
    int m_portalsWord = 0;                   ///< counts what it said of the appearance
    std::array<std::deque<Call>, 2> m_calls; ///< that wait for the one that runs, by their queue
    bool m_isRunning = false;
    bool m_isDarkKnown = false;
    int m_unknown = 1; ///< readings that are to be told for the first time, of the appearance first
    std::vector<std::function<void()>> m_waiting;
    Alive m_alive;
};

} // namespace quillet
