#include "app/Client.h"

#include "app/BackgroundStart.h"
#include "app/ControlService.h"
#include "app/Identity.h"
#include "app/SessionBus.h"
#include "app/StandardStreams.h"
#include "app/VerbResult.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDeadlineTimer>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillet {

namespace {

constexpr auto startDeadline = 10s;
constexpr auto endDeadline = 10s;
constexpr auto pause = 20ms;
constexpr int replyTimeout = 30'000; // milliseconds; many very long clips take some seconds

void sleep() {
    QThread::usleep(std::chrono::microseconds(pause).count());
}

} // namespace

Client::Client(const QString& runtimeFolder) : m_folder(runtimeFolder), m_lock(runtimeFolder) {}

int Client::run(const Command& command, const QStringList& arguments) {
    const bool leave = command.verb == Verb::status || command.verb == Verb::quit;
    const auto door = reach(leave ? WhenAbsent::leave : WhenAbsent::start);
    if (!door)
        return reportAbsence(command);
    int code = forward(*door, arguments);
    // Each answer is measured over a second, which sets the pace.
    while (command.watch && code == int(ExitCode::done))
        code = forward(*door, arguments);
    if (command.verb == Verb::quit && !awaitEnd(*door)) {
        printError(u"Quillet is taking its time to end"_s);
        return int(ExitCode::failed);
    }
    return code;
}

bool Client::activate() {
    const auto door = reach(WhenAbsent::leave);
    return door && forward(*door, {}) == int(ExitCode::done);
}

/// Waits for a Quillet that is starting.
std::optional<Client::Door> Client::reach(WhenAbsent whenAbsent) const {
    BackgroundStart background;
    for (QDeadlineTimer deadline(startDeadline); !deadline.hasExpired(); sleep()) {
        if (auto door = knock())
            return door;
        if (m_lock.isHeldElsewhere() || background.isRunning())
            continue;
        if (whenAbsent == WhenAbsent::leave || background.hasFailed() || !background.start())
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<Client::Door> Client::knock() const {
    if (const auto bus = sessionBus();
        bus && bus->interface()->isServiceRegistered(Identity::applicationID).value())
        return Door{*bus, Identity::applicationID};

    const QString name = u"control"_s;
    const auto socket =
        QDBusConnection::connectToPeer(socketAddress(controlSocket(m_folder)), name);
    if (socket.isConnected())
        return Door{socket, QString()};
    QDBusConnection::disconnectFromPeer(name);
    return std::nullopt;
}

int Client::forward(const Door& door, const QStringList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(door.service, Identity::objectPath,
                                                       Identity::controlInterface, u"Run"_s);
    call << arguments;
    call.setAutoStartService(false);
    const QDBusMessage reply = door.connection.call(call, QDBus::Block, replyTimeout);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 3) {
        printError(u"Quillet did not answer"_s);
        return int(ExitCode::failed);
    }
    const QList<QVariant> results = reply.arguments();
    const auto output = results.at(1).value<QDBusUnixFileDescriptor>();
    if (const QString message = results.at(2).toString(); !message.isEmpty())
        printError(message);
    if (!copyToStandardOutput(output.fileDescriptor()))
        return int(ExitCode::failed);
    return results.first().toInt();
}

/// Until nothing of the process is left that could stand in the way of a new one.
bool Client::awaitEnd(const Door& door) const {
    for (QDeadlineTimer deadline(endDeadline); !deadline.hasExpired(); sleep()) {
        const bool named = !door.service.isEmpty() &&
                           door.connection.interface()->isServiceRegistered(door.service).value();
        if (!named && !m_lock.isHeldElsewhere())
            return true;
    }
    return false;
}

int Client::reportAbsence(const Command& command) {
    if (command.verb == Verb::status)
        printOutput("{\"ready\": false, \"running\": false}\n");
    else if (command.verb == Verb::quit)
        printError(u"Quillet is not running"_s);
    else
        printError(u"Quillet could not be started"_s);
    return int(ExitCode::failed);
}

} // namespace quillet
