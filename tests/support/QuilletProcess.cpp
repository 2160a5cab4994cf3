#include "support/QuilletProcess.h"

#include "support/Eventually.h"

#include <ctime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>

namespace quillet {

using namespace Qt::StringLiterals;

QuilletProcess::QuilletProcess(DesktopSession& session, QString program)
    : m_session(session), m_program(std::move(program)) {}

QuilletProcess::~QuilletProcess() = default;

bool QuilletProcess::start(const QStringList& environment) {
    m_errors.clear();
    if (!QFile::exists(preferencesFile()))
        writePreferences({});
    m_process = m_session.start(m_program, {}, environment);
    const auto isReady = [this] {
        const auto status = QJsonDocument::fromJson(verb({u"status"_s}).output).object();
        return status.value("ready"_L1).toBool() || !isRunning();
    };
    if (eventually(isReady, std::chrono::seconds(10)) && isRunning())
        return true;
    qWarning("not ready: %s%s", verb({u"status"_s}).error.constData(), errors().constData());
    return false;
}

void QuilletProcess::quit() {
    verb({u"quit"_s});
    m_process->waitForFinished(5'000);
    m_errors += m_process->readAllStandardError();
}

void QuilletProcess::kill() {
    m_process->kill();
    m_process->waitForFinished(5'000);
}

bool QuilletProcess::isRunning() const {
    // Notices an end that happened meanwhile; there is no event loop that would.
    m_process->waitForFinished(0);
    return m_process->state() == QProcess::Running;
}

qint64 QuilletProcess::pid() const {
    return m_process->processId();
}

QByteArray QuilletProcess::errors() {
    m_process->waitForReadyRead(0);
    return m_errors += m_process->readAllStandardError();
}

RunResult QuilletProcess::verb(const QStringList& arguments) {
    return m_session.run(m_program, arguments);
}

QJsonArray QuilletProcess::clips() {
    return QJsonDocument::fromJson(verb({u"clip"_s, u"list"_s, u"--json"_s}).output).array();
}

std::vector<std::string> QuilletProcess::texts() {
    std::vector<std::string> texts;
    for (const auto& clip : clips()) {
        const QString kind = clip["kind"_L1].toString();
        const bool textual = kind != "image"_L1 && kind != "file"_L1;
        texts.push_back((textual ? clip["text"_L1].toString() : u"<%1>"_s.arg(kind)).toStdString());
    }
    return texts;
}

QByteArray QuilletProcess::content(int position) {
    return verb({u"clip"_s, u"show"_s, QString::number(position)}).output;
}

QString QuilletProcess::preferencesFile() const {
    return m_session.configFolder() + u"/quillet/preferences.json"_s;
}

void QuilletProcess::writePreferences(QJsonObject preferences) {
    preferences.insert(u"app.didOnboard"_s, true);
    QDir().mkpath(m_session.configFolder() + u"/quillet"_s);
    QFile file(preferencesFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(preferences).toJson()) < 0)
        qFatal("the preferences cannot be written");
}

qint64 QuilletProcess::processFigure(const QString& file, const QByteArray& key) const {
    QFile figures(u"/proc/%1/%2"_s.arg(pid()).arg(file));
    if (!figures.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : figures.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(key.size()).simplified().split(' ').first().toLongLong();
    }
    return -1;
}

double QuilletProcess::processorMilliseconds() const {
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(static_cast<pid_t>(pid()), &clock) != 0 ||
        clock_gettime(clock, &time) != 0)
        qFatal("the processor time cannot be read");
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

qint64 QuilletProcess::contextSwitches() const {
    qint64 sum = 0;
    for (const QString& thread :
         QDir(u"/proc/%1/task"_s.arg(pid())).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        sum += processFigure(u"task/%1/status"_s.arg(thread), "voluntary_ctxt_switches:");
    return sum;
}

} // namespace quillet
