#pragma once

#include "platform/Power.h"

#include <memory>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <vector>

namespace quillet {

/// A service that keeps the machine awake for those who ask it to.
struct SleepInhibitor {
    enum class Bus { session, system };

    Bus bus;
    QString service;
    QString path;
    QString olderPath; ///< where earlier versions have the object; empty where it never moved
    QString interface;
    QString release; ///< the method that takes the cookie back; empty where it is a file to close

    /// What Inhibit is called with; nothing where the service has no part in the type.
    QVariantList (*arguments)(Power::AssertionType type, const QString& reason);
};

const std::vector<SleepInhibitor>& sleepInhibitors();

/// What a service has granted. Destroying it gives it back to the program that granted it, even if
/// another one stands for the service by then.
class SleepGrant {
public:
    /// Null where the service refused.
    static std::unique_ptr<SleepGrant> from(const QDBusMessage& reply,
                                            const SleepInhibitor& inhibitor,
                                            const QDBusConnection& bus, const QString& path);
    ~SleepGrant();
    SleepGrant(const SleepGrant&) = delete;
    SleepGrant& operator=(const SleepGrant&) = delete;

private:
    SleepGrant(const QDBusConnection& bus, const QDBusMessage& release);

    QDBusConnection m_bus;
    QDBusMessage m_release; ///< invalid where there is a file
    QDBusUnixFileDescriptor m_file;
};

} // namespace quillet
