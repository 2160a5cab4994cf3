#include "platform/linux/dbus/ServiceNames.h"

#include "platform/linux/dbus/Buses.h"

using namespace Qt::StringLiterals;

namespace quillet {

ServiceNames::ServiceNames(const QDBusConnection& bus, const QStringList& services) : m_bus(bus) {
    if (!bus.isConnected())
        return;
    m_watcher.setConnection(bus);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    m_watcher.setWatchedServices(services);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& service, const QString& before, const QString& now) {
                if (now.isEmpty())
                    m_running.remove(service);
                else
                    m_running.insert(service);
                if (onOwnerChanged)
                    onOwnerChanged(service, before, now);
            });
    list(u"ListNames"_s, m_running);
    list(u"ListActivatableNames"_s, m_startable);
}

bool ServiceNames::mayAnswer(const QString& service) const {
    return m_bus.isConnected() &&
           (m_unknown > 0 || m_running.contains(service) || m_startable.contains(service));
}

void ServiceNames::list(const QString& method, QSet<QString>& names) {
    const QString bus = u"org.freedesktop.DBus"_s;
    callAsync(m_bus, QDBusMessage::createMethodCall(bus, u"/org/freedesktop/DBus"_s, bus, method),
              this, [this, &names](const QDBusMessage& reply) {
                  if (reply.type() != QDBusMessage::ReplyMessage)
                      return;
                  const QStringList listed = reply.arguments().constFirst().toStringList();
                  names = QSet<QString>(listed.begin(), listed.end());
                  --m_unknown;
              });
}

} // namespace quillet
