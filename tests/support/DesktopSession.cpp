#include "support/DesktopSession.h"

#include "support/FakeApplication.h"
#include "support/PrivateBus.h"

#include <csignal>
#include <QDir>
#include <QHash>
#include <sys/prctl.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr int startDeadline = 10'000; // milliseconds
constexpr int runDeadline = 30'000;

QByteArray firstLine(QProcess& process) {
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(startDeadline))
            qFatal("%s did not start: %s", qPrintable(process.program()),
                   process.readAllStandardError().constData());
    }
    return process.readLine().trimmed();
}

QStringList makeFolders(const QString& home) {
    QStringList variables{u"HOME="_s + home};
    for (const auto& [variable, folder] : {std::pair{u"XDG_CONFIG_HOME="_s, u"/config"_s},
                                           {u"XDG_DATA_HOME="_s, u"/data"_s},
                                           {u"XDG_CACHE_HOME="_s, u"/cache"_s},
                                           {u"XDG_STATE_HOME="_s, u"/state"_s}}) {
        QDir().mkpath(home + folder);
        variables << variable + home + folder;
    }
    return variables;
}

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

DesktopSession::DesktopSession(const QString& windowManager, const QSize& screen) {
    renewHome();
    startServer(screen);
    startBus();
    if (!windowManager.isEmpty())
        startWindowManager(windowManager);
}

DesktopSession::~DesktopSession() {
    while (!m_services.empty())
        m_services.pop_back();
}

void DesktopSession::renewHome() {
    m_home = std::make_unique<QTemporaryDir>();
}

ProcessHandle DesktopSession::start(const QString& program, const QStringList& arguments,
                                    const QStringList& environment) {
    ProcessHandle process(new QProcess);
    QStringList variables{u"PATH="_s + qEnvironmentVariable("PATH"),
                          u"LANG=C.UTF-8"_s,
                          u"TZ=UTC"_s,
                          u"QT_QPA_PLATFORM=xcb"_s,
                          u"QT_ACCESSIBILITY=0"_s,
                          u"NO_AT_BRIDGE=1"_s,
                          u"DISPLAY="_s + QString::fromLatin1(m_display),
                          u"DBUS_SESSION_BUS_ADDRESS="_s + m_busAddress,
                          u"XDG_RUNTIME_DIR="_s + m_runtime.path(),
                          u"XDG_SESSION_TYPE=x11"_s};
    process->setEnvironment(variables + makeFolders(home()) + environment);
    process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process->start(program, arguments);
    if (!process->waitForStarted(startDeadline))
        qFatal("%s cannot be started", qPrintable(program));
    return process;
}

RunResult DesktopSession::run(const QString& program, const QStringList& arguments,
                              const QByteArray& input, const QStringList& environment) {
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

ProcessHandle DesktopSession::copy(const QByteArray& bytes, const QString& target,
                                   const QString& selection) {
    ProcessHandle owner =
        start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, selection, u"-i"_s, u"-t"_s, target});
    owner->write(bytes);
    owner->closeWriteChannel();
    while (owner->bytesToWrite() > 0 && owner->waitForBytesWritten(startDeadline)) {
    }
    return owner;
}

void DesktopSession::startServer(const QSize& screen) {
    m_services.push_back(start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s,
                                           u"%1x%2x24"_s.arg(screen.width()).arg(screen.height()),
                                           u"-noreset"_s, u"-nolisten"_s, u"tcp"_s}));
    m_display = ':' + firstLine(*m_services.back());
}

void DesktopSession::startWindowManager(const QString& program) {
    const QHash<QString, QStringList> arguments{{u"openbox"_s, {u"--sm-disable"_s}},
                                                {u"xfwm4"_s, {u"--compositor=off"_s}}};
    m_services.push_back(start(program, arguments.value(program)));
    // It is there when it manages windows.
    FakeApplication(m_display, "Probe");
}

void DesktopSession::startBus() {
    m_services.push_back(start(u"dbus-daemon"_s, privateBusArguments(m_runtime)));
    m_busAddress = QString::fromUtf8(firstLine(*m_services.back()));
}

} // namespace quillet
