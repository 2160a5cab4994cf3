#pragma once

#include <functional>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QSet>
#include <QStringList>

namespace quillet {

/// Which of some services there are on a bus. Learns it without waiting for anybody.
class ServiceNames : public QObject {
public:
    ServiceNames(const QDBusConnection& bus, const QStringList& services);

    /// Whether a service is there or would be started by a call. All may be until it is known.
    bool mayAnswer(const QString& service) const;

    const QDBusConnection& bus() const { return m_bus; }

    /// Called after another program has come to stand for a service. The names are those on the
    /// bus; none is empty but that of a program that was not there before or is not any more.
    std::function<void(const QString& service, const QString& before, const QString& now)>
        onOwnerChanged;

private:
    void list(const QString& method, QSet<QString>& names);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    int m_unknown = 2; ///< lists that have not come yet
    QSet<QString> m_running;
    QSet<QString> m_startable;
};

} // namespace quillet
