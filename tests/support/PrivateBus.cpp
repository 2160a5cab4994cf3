#include "support/PrivateBus.h"

#include <csignal>
#include <QDBusError>
#include <QFile>
#include <sys/prctl.h>

namespace quillet {

using namespace Qt::StringLiterals;

PrivateBus::PrivateBus() {
    QFile configuration(m_folder.filePath(u"bus.conf"_s));
    if (!configuration.open(QIODevice::WriteOnly))
        qFatal("no file for the bus");
    configuration.write(
        "<busconfig><type>session</type><listen>unix:path=" + m_folder.filePath(u"bus"_s).toUtf8() +
        "</listen><policy context='default'><allow send_destination='*'/>"
        "<allow receive_sender='*'/><allow own='*'/></policy></busconfig>");
    configuration.close();
    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_daemon.start(u"dbus-daemon"_s, {u"--config-file="_s + configuration.fileName(), u"--nofork"_s,
                                      u"--nopidfile"_s, u"--print-address=1"_s});
    while (!m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead(10'000))
            qFatal("no bus: %s", m_daemon.readAllStandardError().constData());
    }
    m_address = QString::fromUtf8(m_daemon.readLine().trimmed());
}

PrivateBus::~PrivateBus() {
    for (const QString& name : m_connections)
        QDBusConnection::disconnectFromBus(name);
    m_daemon.terminate();
    m_daemon.waitForFinished(5'000);
}

QDBusConnection PrivateBus::connect() {
    static int count = 0;
    m_connections.append(u"test-%1"_s.arg(++count));
    return QDBusConnection::connectToBus(m_address, m_connections.last());
}

FakeService::FakeService(PrivateBus& bus, const QString& name, const QString& path)
    : m_connection(bus.connect()), m_path(path) {
    if (!m_connection.registerVirtualObject(path, this, QDBusConnection::SubPath) ||
        !m_connection.registerService(name))
        qFatal("the name %s is taken", qPrintable(name));
}

FakeService::~FakeService() {
    QDBusConnection::disconnectFromBus(m_connection.name());
}

void FakeService::emitSignal(const QString& interface, const QString& name,
                             const QVariantList& arguments) {
    auto message = QDBusMessage::createSignal(m_path, interface, name);
    message.setArguments(arguments);
    m_connection.send(message);
}

bool FakeService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const auto answer = answers.find(message.member());
    const QDBusMessage reply =
        answer != answers.end()
            ? answer->second(message)
            : message.createErrorReply(QDBusError::UnknownMethod, u"no such method"_s);
    if (reply.type() != QDBusMessage::InvalidMessage)
        connection.send(reply);
    return true;
}

} // namespace quillet
