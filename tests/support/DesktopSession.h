#pragma once

#include <memory>
#include <QByteArray>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <vector>

namespace quillet {

/// What a program that ran to its end came to.
struct RunResult {
    int exitCode = -1; ///< -1 where it crashed, hung or could not be started
    QByteArray output;
    QByteArray error;
};

/// A program that was started. It ends with its handle: politely where it lets itself be asked.
struct ProcessEnder {
    void operator()(QProcess* process) const;
};
using ProcessHandle = std::unique_ptr<QProcess, ProcessEnder>;

/// A desktop for one test program: an X server, a window manager and a session bus, all private,
/// and a home folder that is thrown away. Programs started here see nothing else. Everything
/// started ends with the session, or with the test program should that die first.
class DesktopSession {
public:
    /// The name of a window manager; none where it is empty.
    explicit DesktopSession(const QString& windowManager = QStringLiteral("openbox"),
                            const QSize& screen = {1920, 1080});
    ~DesktopSession();

    const QByteArray& display() const { return m_display; }
    const QString& busAddress() const { return m_busAddress; }

    /// Gives what is started from now on an empty home.
    void renewHome();
    QString home() const { return m_home->path(); }
    QString configFolder() const { return home() + QStringLiteral("/config"); }
    QString dataFolder() const { return home() + QStringLiteral("/data"); }

    ProcessHandle start(const QString& program, const QStringList& arguments,
                        const QStringList& environment = {});

    /// Runs a program to its end; one that hangs is killed after half a minute.
    RunResult run(const QString& program, const QStringList& arguments,
                  const QByteArray& input = {}, const QStringList& environment = {});

    /// Copies with xclip, which then owns the clipboard, as the program that one copies from.
    ProcessHandle copy(const QByteArray& bytes, const QString& target,
                       const QString& selection = QStringLiteral("clipboard"));

private:
    void startServer(const QSize& screen);
    void startWindowManager(const QString& program);
    void startBus();

    QByteArray m_display;
    QString m_busAddress;
    QTemporaryDir m_runtime;
    std::unique_ptr<QTemporaryDir> m_home;
    std::vector<ProcessHandle> m_services;
};

} // namespace quillet
