#include "app/ProcessSession.h"

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

const QString program = QStringLiteral(QUILLET_PROGRAM);
const QStringList inMemory{u"QUILLET="_s + program, u"QUILLET_PLATFORM=memory"_s,
                           u"QT_QPA_PLATFORM=offscreen"_s};

} // namespace

ProcessSession::~ProcessSession() {
    for (const qint64 pid : processes())
        kill(pid_t(pid), SIGKILL);
}

void ProcessSession::fillHistory(const std::vector<QByteArray>& texts) const {
    MemoryScheduler scheduler;
    const auto opening = ClipContainer::open(dataFolder(), scheduler);
    scheduler.setNow(QDateTime::currentDateTimeUtc().addSecs(-3600));
    for (const QByteArray& text : texts) {
        scheduler.advance(std::chrono::seconds(1));
        ClipItem::Fields fields;
        fields.id = QUuid::createUuid();
        fields.kindRaw = u"text"_s;
        fields.text = QString::fromUtf8(text);
        fields.createdAt = scheduler.now();
        fields.contentHash = contentHash(text);
        opening.container->mainContext().insert(fields);
    }
    opening.container->mainContext().save();
}

QProcess& ProcessSession::launch(const QStringList& arguments) {
    m_launched.push_back(m_session.start(program, arguments, inMemory));
    return *m_launched.back();
}

QProcess& ProcessSession::start() {
    QProcess& process = launch();
    eventually([&] {
        process.waitForFinished(1);
        return process.state() == QProcess::NotRunning || status()["ready"_L1].toBool();
    });
    return process;
}

RunResult ProcessSession::run(const QStringList& arguments) const {
    return m_session.run(program, arguments, {}, inMemory);
}

RunResult ProcessSession::shell(const QString& script) const {
    return m_session.run(u"bash"_s, {u"-c"_s, script}, {}, inMemory);
}

QJsonObject ProcessSession::status() const {
    return QJsonDocument::fromJson(run({u"status"_s}).output).object();
}

std::vector<qint64> ProcessSession::processes() const {
    const QByteArray mark = "XDG_RUNTIME_DIR=" + m_session.runtimeFolder().toUtf8();
    const QString executable = QFileInfo(program).canonicalFilePath();
    std::vector<qint64> found;
    for (const QString& pid : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile environment(u"/proc/"_s + pid + u"/environ"_s);
        if (QFile::symLinkTarget(u"/proc/"_s + pid + u"/exe"_s) == executable &&
            environment.open(QIODevice::ReadOnly) &&
            environment.readAll().split('\0').contains(mark))
            found.push_back(pid.toLongLong());
    }
    return found;
}

} // namespace quillet
