#include "support/StallProbe.h"

#include "support/Eventually.h"

#include <algorithm>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>

namespace quillet {

using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

namespace {

/// How long a thread has waited for a processor so far.
std::chrono::nanoseconds queued(const QString& thread) {
    QFile figures(u"/proc/%1/schedstat"_s.arg(thread));
    if (!figures.open(QIODevice::ReadOnly))
        return {};
    return std::chrono::nanoseconds(figures.readAll().split(' ').value(1).toLongLong());
}

} // namespace

StallProbe::StallProbe(const QString& busAddress) {
    m_thread = std::thread([this, busAddress] { ask(busAddress); });
    if (!eventually([this] { return m_answers > 0; }))
        qFatal("Quillet does not answer on the session bus");
}

StallProbe::~StallProbe() {
    longest();
}

std::chrono::milliseconds StallProbe::longest() {
    m_measuring = false;
    if (m_thread.joinable())
        m_thread.join();
    return std::chrono::ceil<std::chrono::milliseconds>(m_longest.load());
}

void StallProbe::ask(const QString& busAddress) {
    const QString name = u"stall probe"_s;
    const QString service = u"org.quillet.Quillet"_s;
    auto bus = QDBusConnection::connectToBus(busAddress, name);
    const QString quillet = QString::number(bus.interface()->servicePid(service).value());
    const auto waited = [&] { return queued(quillet) + queued(u"thread-self"_s); };
    auto call = QDBusMessage::createMethodCall(service, u"/org/quillet/Quillet"_s,
                                               u"org.quillet.Quillet.Control1"_s, u"Run"_s);
    call << QStringList{u"status"_s};
    while (m_measuring) {
        const auto waitedBefore = waited();
        const auto begin = Clock::now();
        const auto reply = bus.call(call, QDBus::Block, 60'000);
        const auto took = Clock::now() - begin - (waited() - waitedBefore);
        if (reply.type() != QDBusMessage::ReplyMessage)
            break;
        // The first answer also pays for the connection.
        if (m_answers++ > 0)
            m_longest =
                std::max(m_longest.load(), std::chrono::ceil<std::chrono::microseconds>(took));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    QDBusConnection::disconnectFromBus(name);
}

} // namespace quillet
