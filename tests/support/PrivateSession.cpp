#include "support/PrivateSession.h"

#include <array>
#include <csignal>
#include <QDir>
#include <sys/prctl.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr int startDeadline = 10'000; // milliseconds
constexpr int runDeadline = 30'000;

constexpr std::array folders{"config", "data", "cache", "state"};

} // namespace

void ProcessEnder::operator()(QProcess* process) const {
    const std::unique_ptr<QProcess> owned(process);
    if (process->state() == QProcess::NotRunning)
        return;
    process->terminate();
    if (process->waitForFinished(2'000))
        return;
    process->kill();
    process->waitForFinished(2'000);
}

PrivateSession::PrivateSession(Bus bus) {
    renewHome();
    m_environment << u"PATH="_s + qEnvironmentVariable("PATH") << u"LANG=C.UTF-8"_s << u"TZ=UTC"_s
                  << u"XDG_RUNTIME_DIR="_s + runtimeFolder();
    if (bus == Bus::present)
        m_environment << u"DBUS_SESSION_BUS_ADDRESS="_s + m_bus.emplace().address();
}

void PrivateSession::renewHome() {
    m_home = std::make_unique<QTemporaryDir>();
    for (const char* folder : folders)
        QDir(home()).mkdir(QString::fromLatin1(folder));
}

ProcessHandle PrivateSession::start(const QString& program, const QStringList& arguments,
                                    const QStringList& environment) const {
    ProcessHandle process(new QProcess);
    QStringList variables = m_environment + QStringList(u"HOME="_s + home());
    for (const char* each : folders) {
        const QString folder = QString::fromLatin1(each);
        variables << u"XDG_%1_HOME=%2/%3"_s.arg(folder.toUpper(), home(), folder);
    }
    process->setEnvironment(variables + environment);
    process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process->start(program, arguments);
    if (!process->waitForStarted(startDeadline))
        qFatal("%s cannot be started", qPrintable(program));
    return process;
}

RunResult PrivateSession::run(const QString& program, const QStringList& arguments,
                              const QByteArray& input, const QStringList& environment) const {
    const auto process = start(program, arguments, environment);
    process->write(input);
    process->closeWriteChannel();
    if (!process->waitForFinished(runDeadline)) {
        process->kill();
        process->waitForFinished();
    }
    const bool ended = process->exitStatus() == QProcess::NormalExit;
    return {ended ? process->exitCode() : -1, process->readAllStandardOutput(),
            process->readAllStandardError()};
}

} // namespace quillet
