#include "app/PrivateSession.h"

#include "clipboard/Captured.h"
#include "clipboard/ClipContainer.h"
#include "platform/memory/MemoryScheduler.h"
#include "support/Eventually.h"

#include <csignal>
#include <QDir>
#include <QFile>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

constexpr int patience = 30'000; // milliseconds

Outcome finish(QProcess& process) {
    if (!process.waitForFinished(patience))
        return {};
    const bool regular = process.exitStatus() == QProcess::NormalExit;
    return {regular ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

} // namespace

PrivateSession::PrivateSession(Bus bus) {
    for (const QString& name : {u"run"_s, u"data"_s, u"config"_s})
        QDir(m_folder.path()).mkdir(name);
    QFile::setPermissions(m_folder.path() + u"/run"_s,
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (bus == Bus::absent)
        return;
    m_bus.start(u"dbus-daemon"_s,
                {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s,
                 u"--address=unix:path="_s + m_folder.path() + u"/bus"_s});
    m_bus.waitForReadyRead(patience);
    m_busAddress = QString::fromUtf8(m_bus.readLine().trimmed());
}

PrivateSession::~PrivateSession() {
    for (const qint64 pid : processes())
        kill(pid_t(pid), SIGKILL);
    for (const auto& process : m_launched)
        process->waitForFinished(patience);
    m_bus.terminate();
    m_bus.waitForFinished(patience);
}

void PrivateSession::fillHistory(const std::vector<QByteArray>& texts) const {
    MemoryScheduler scheduler;
    const auto opening = ClipContainer::open(dataFolder(), scheduler);
    QDateTime date = QDateTime::currentDateTimeUtc().addSecs(-3600);
    for (const QByteArray& text : texts) {
        date = date.addSecs(1);
        ClipItem::Fields fields;
        fields.id = QUuid::createUuid();
        fields.kindRaw = u"text"_s;
        fields.text = QString::fromUtf8(text);
        fields.createdAt = date;
        fields.contentHash = contentHash(text);
        opening.container->mainContext().insert(fields);
    }
    opening.container->mainContext().save();
}

std::unique_ptr<QProcess> PrivateSession::prepare(const QString& program,
                                                  const QStringList& arguments) const {
    auto process = std::make_unique<QProcess>();
    process->setProgram(program);
    process->setArguments(arguments);
    QStringList environment{u"PATH="_s + qEnvironmentVariable("PATH"),
                            u"HOME="_s + m_folder.path(),
                            u"XDG_RUNTIME_DIR="_s + m_folder.path() + u"/run"_s,
                            u"XDG_DATA_HOME="_s + m_folder.path() + u"/data"_s,
                            u"XDG_CONFIG_HOME="_s + m_folder.path() + u"/config"_s,
                            u"QUILLET="_s + QStringLiteral(QUILLET_PROGRAM),
                            u"QUILLET_PLATFORM=memory"_s,
                            u"QT_QPA_PLATFORM=offscreen"_s};
    if (!m_busAddress.isEmpty())
        environment << u"DBUS_SESSION_BUS_ADDRESS="_s + m_busAddress;
    process->setEnvironment(environment);
    return process;
}

QProcess& PrivateSession::launch(const QStringList& arguments) {
    m_launched.push_back(prepare(QStringLiteral(QUILLET_PROGRAM), arguments));
    m_launched.back()->start();
    m_launched.back()->waitForStarted(patience);
    return *m_launched.back();
}

QProcess& PrivateSession::start() {
    QProcess& process = launch();
    eventually([&] {
        process.waitForFinished(1);
        return process.state() == QProcess::NotRunning || status()["ready"_L1].toBool();
    });
    return process;
}

Outcome PrivateSession::run(const QStringList& arguments) const {
    const auto process = prepare(QStringLiteral(QUILLET_PROGRAM), arguments);
    process->start();
    return finish(*process);
}

Outcome PrivateSession::shell(const QString& script) const {
    const auto process = prepare(u"bash"_s, {u"-c"_s, script});
    process->start();
    return finish(*process);
}

QJsonObject PrivateSession::status() const {
    return QJsonDocument::fromJson(run({u"status"_s}).output).object();
}

std::vector<qint64> PrivateSession::processes() const {
    const QByteArray mark = "XDG_RUNTIME_DIR=" + m_folder.path().toUtf8() + "/run";
    const QString program = QFileInfo(QStringLiteral(QUILLET_PROGRAM)).canonicalFilePath();
    std::vector<qint64> found;
    for (const QString& pid : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile environment(u"/proc/"_s + pid + u"/environ"_s);
        if (QFile::symLinkTarget(u"/proc/"_s + pid + u"/exe"_s) == program &&
            environment.open(QIODevice::ReadOnly) &&
            environment.readAll().split('\0').contains(mark))
            found.push_back(pid.toLongLong());
    }
    return found;
}

} // namespace quillet
