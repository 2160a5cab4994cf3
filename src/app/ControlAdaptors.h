#pragma once

#include "app/ControlService.h"

#include <QDBusAbstractAdaptor>
#include <QDBusUnixFileDescriptor>

namespace quillet {

/// Runs a command line in the running Quillet. `output` is a file whose whole content belongs on
/// the caller's standard output, so that a clip of any size needs no message on the bus.
class ControlAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillet.Quillet.Control1")

public:
    explicit ControlAdaptor(ControlService& service);

public Q_SLOTS:
    int Run(const QStringList& arguments, QDBusUnixFileDescriptor& output, QString& message);

private:
    ControlService& m_service;
};

/// What desktops call on an application that they start through the bus.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(ControlService& service);

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameter,
                        const QVariantMap& platformData);

private:
    ControlService& m_service;
};

} // namespace quillet
