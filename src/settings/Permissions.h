#pragma once

#include "platform/Access.h"
#include "platform/Commands.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"

#include <array>
#include <functional>
#include <memory>
#include <QObject>

namespace quillet {

/// What the desktop lets this program do: read the screen for captures; press, hold and watch keys
/// for pasting, snapping and the keyboard lock. Knows the state as of the last refresh(), asks for
/// what is missing, and restarts the program, since a desktop may apply a grant to a fresh process
/// only. Views poll while they show the state; whoever needs a permission refreshes before.
class Permissions : public QObject {
    Q_OBJECT

public:
    using Kind = Access::Kind;

    static constexpr std::array kinds{Kind::screenRecording, Kind::accessibility};
    static QString title(Kind kind);
    static QString reason(Kind kind); ///< what it is needed for, in a sentence
    static QString symbol(Kind kind);

    /// This program: its file, and the way it ends.
    struct Program {
        QString path;
        std::function<void()> terminate;
    };

    struct Services {
        Access& access;
        Workspace& workspace;
        Commands& commands;
        Scheduler& scheduler;
    };

    Permissions(const Services& services, Program program);

    /// The one of the process, which its composition puts here. For app/ alone.
    static inline Permissions* shared = nullptr;

    bool accessibility() const { return m_accessibility; }
    bool screenRecording() const { return m_screenRecording; }
    bool isGranted(Kind kind) const;

    /// Why it is not given, for people; empty where it is.
    QString cause(Kind kind) const { return m_services.access.cause(kind); }

    /// Whether it was requested during this run, which a restart may have to follow.
    bool requestedScreenRecording() const { return m_requestedScreenRecording; }

    void refresh();

    /// Asks for a permission. The state changes at a later refresh().
    void request(Kind kind);

    /// Refreshes once a second until stopPolling(), however often it was started.
    void startPolling();
    void stopPolling();

    /// Shows the program's file in the file manager.
    void revealApp() { m_services.workspace.reveal({m_program.path}); }

    /// Ends this process and starts another one of the same file.
    void relaunch();

    /// Whether the program's file is where programs are installed.
    bool isInstalled() const;

Q_SIGNALS:
    void accessibilityChanged();
    void screenRecordingChanged();
    void requestedScreenRecordingChanged();

private:
    void assign(bool& field, bool value, void (Permissions::*changed)());

    Services m_services;
    Program m_program;
    bool m_accessibility;
    bool m_screenRecording;
    bool m_requestedScreenRecording = false;
    std::unique_ptr<RepeatingTimer> m_pollTimer;
    std::unique_ptr<Timer> m_settingsTimer;
};

} // namespace quillet
