#pragma once

#include "support/DesktopSession.h"

#include <chrono>
#include <QJsonArray>
#include <QJsonObject>
#include <string>

namespace quillet {

/// The program itself, run in a session and driven the way people and scripts do: by its verbs.
/// Ends with this object.
class QuilletProcess {
public:
    QuilletProcess(DesktopSession& session, QString program);
    ~QuilletProcess();

    /// Returns when it watches the pasteboard; false when it did not come so far.
    bool start(const QStringList& environment = {});
    void quit();
    /// Ends it at once, without a chance to save anything.
    void kill();
    bool isRunning() const;
    qint64 pid() const;
    /// What it has written to standard error since its start.
    QByteArray errors();

    RunResult verb(const QStringList& arguments);
    /// The history as listed, newest first.
    QJsonArray clips();
    /// The texts of the history, newest first; the kind in angle brackets for other clips.
    std::vector<std::string> texts();
    /// The content of the clip at `position`, as `clip show` gives it.
    QByteArray content(int position);

    /// Writes the preferences that the next start reads, those of a user who has seen the setup
    /// guide. A start without any writes these.
    void writePreferences(QJsonObject preferences);

    /// A line of /proc/PID/<file> as a number: the one that begins with `key`.
    qint64 processFigure(const QString& file, const QByteArray& key) const;

    /// Processor time of all its threads, also of those that have ended.
    double processorMilliseconds() const;

    /// How often its threads have gone to sleep so far: one for every time they were woken up.
    qint64 contextSwitches() const;

private:
    QString preferencesFile() const;

    DesktopSession& m_session;
    QString m_program;
    ProcessHandle m_process;
    QByteArray m_errors;
};

} // namespace quillet
