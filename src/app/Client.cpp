#include "app/Client.h"

#include "app/BackgroundStart.h"
#include "app/ControlService.h"
#include "app/Identity.h"
#include "app/Printable.h"
#include "app/SessionBus.h"
#include "app/StandardStreams.h"
#include "app/VerbResult.h"

#include <algorithm>
#include <array>
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
constexpr auto signOfLifeDeadline = 4s;
constexpr auto replyDeadline = 30s; // a start with a large history, or many very long clips

void sleep() {
    QThread::usleep(std::chrono::microseconds(pause).count());
}

constexpr std::array<QLatin1StringView, 4> errorsOfTheGone{
    ".NoReply"_L1, ".Disconnected"_L1, ".ServiceUnknown"_L1, ".NameHasNoOwner"_L1};

QString whyUnanswered(const QDBusMessage& reply, bool isLate) {
    if (isLate)
        return u"the running Quillet does not answer; it may be stopped or very busy"_s;
    const QString name = reply.errorName();
    if (std::ranges::any_of(errorsOfTheGone, [&](auto word) { return name.endsWith(word); }))
        return u"Quillet ended before it answered"_s;
    return u"Quillet cannot be asked: %1"_s.arg(printable(reply.errorMessage()));
}

} // namespace

Client::Client(const QString& runtimeFolder) : m_folder(runtimeFolder), m_lock(runtimeFolder) {}

int Client::run(const Command& command, const QStringList& arguments) {
    const bool leave = command.verb == Verb::status || command.verb == Verb::quit;
    const auto door = reach(leave ? WhenAbsent::leave : WhenAbsent::start);
    if (!door)
        return reportAbsence(command);
    int code = forward(*door, arguments);
    // Each answer is measured over two seconds, which sets the pace.
    while (command.watch && code == int(ExitCode::done))
        code = forward(*door, arguments);
    if (command.verb == Verb::quit && code == int(ExitCode::done) && !awaitEnd(*door)) {
        printError(u"Quillet is taking its time to end"_s);
        return int(ExitCode::failed);
    }
    return code;
}

bool Client::activate() {
    const auto door = reach(WhenAbsent::leave);
    return door && std::holds_alternative<QVariantList>(ask(*door, {}));
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

/// What `method` of the running Quillet returned, or why it returned nothing.
std::variant<QVariantList, QString> Client::call(const Door& door, const QString& interface,
                                                 const QString& method,
                                                 const QVariantList& arguments,
                                                 std::chrono::milliseconds patience) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(door.service, Identity::objectPath, interface, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    const QDeadlineTimer deadline(patience * 9 / 10); // the library's timers are coarse
    const QDBusMessage reply =
        door.connection.call(call, QDBus::Block, static_cast<int>(patience.count()));
    if (reply.type() == QDBusMessage::ReplyMessage)
        return reply.arguments();
    return whyUnanswered(reply, deadline.hasExpired());
}

/// The exit code, the output and the message to which the arguments led.
std::variant<QVariantList, QString> Client::ask(const Door& door, const QStringList& arguments) {
    // Its library answers this even while it starts or is busy. A stopped Quillet does not, and
    // shall not do what was asked for when it goes on some day.
    auto alive = call(door, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s, {}, signOfLifeDeadline);
    if (std::holds_alternative<QString>(alive))
        return alive;
    auto answer = call(door, Identity::controlInterface, u"Run"_s, {arguments}, replyDeadline);
    if (const auto* results = std::get_if<QVariantList>(&answer); results && results->size() != 3)
        return u"the running Quillet is of another version"_s;
    return answer;
}

int Client::forward(const Door& door, const QStringList& arguments) {
    const auto answer = ask(door, arguments);
    if (const auto* obstacle = std::get_if<QString>(&answer)) {
        printError(*obstacle);
        return int(ExitCode::failed);
    }
    const auto& results = std::get<QVariantList>(answer);
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
