#include "support/StallProbe.h"

#include "support/Eventually.h"

#include <algorithm>
#include <QDBusConnection>
#include <QDBusMessage>

namespace quillet {

using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

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
    auto bus = QDBusConnection::connectToBus(busAddress, name);
    auto call = QDBusMessage::createMethodCall(u"org.quillet.Quillet"_s, u"/org/quillet/Quillet"_s,
                                               u"org.quillet.Quillet.Control1"_s, u"Run"_s);
    call << QStringList{u"status"_s};
    while (m_measuring) {
        const auto begin = Clock::now();
        const auto reply = bus.call(call, QDBus::Block, 60'000);
        const auto took =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
        if (reply.type() != QDBusMessage::ReplyMessage)
            break;
        // The first answer also pays for the connection.
        if (m_answers++ > 0)
            m_longest = std::max(m_longest.load(), took);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    QDBusConnection::disconnectFromBus(name);
}

} // namespace quillet
