#include "app/ControlAdaptors.h"

#include "app/Logging.h"
#include "app/Printable.h"

#include <QDBusMessage>
#include <sys/mman.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

/// A file in memory that holds the bytes; invalid when there is no memory for it.
QDBusUnixFileDescriptor memoryFile(const QByteArray& bytes) {
    QDBusUnixFileDescriptor descriptor;
    descriptor.giveFileDescriptor(memfd_create("quillet-output", MFD_CLOEXEC));
    for (qsizetype done = 0; descriptor.isValid() && done < bytes.size();) {
        const ssize_t written = write(descriptor.fileDescriptor(), bytes.constData() + done,
                                      size_t(bytes.size() - done));
        if (written <= 0)
            return {};
        done += written;
    }
    return descriptor;
}

} // namespace

ControlAdaptor::ControlAdaptor(ControlService& service)
    : QDBusAbstractAdaptor(&service), m_service(service) {
    // Methods are looked up by the names of their types, and a first look-up that fails is kept.
    qRegisterMetaType<QDBusUnixFileDescriptor>();
}

int ControlAdaptor::Run(const QStringList& arguments, QDBusUnixFileDescriptor&, QString&) {
    m_service.setDelayedReply(true); // what is returned here counts for nothing
    const QDBusConnection connection = m_service.connection();
    m_service.run(arguments, [call = m_service.message(), connection](VerbResult result) {
        QDBusUnixFileDescriptor output = memoryFile(result.output);
        if (!output.isValid()) {
            result = VerbResult::failed(u"no memory for the output"_s);
            output = memoryFile({});
        }
        connection.send(call.createReply(
            {int(result.code), QVariant::fromValue(output), QVariant(result.message)}));
    });
    return 0;
}

ApplicationAdaptor::ApplicationAdaptor(ControlService& service)
    : QDBusAbstractAdaptor(&service), m_service(service) {}

void ApplicationAdaptor::Activate(const QVariantMap&) {
    m_service.run({}, [](const VerbResult&) {});
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap&) {
    qCWarning(logApp) << "Asked to open" << uris.size() << "files, which Quillet does not do";
}

void ApplicationAdaptor::ActivateAction(const QString& name, const QVariantList&,
                                        const QVariantMap&) {
    qCWarning(logApp).noquote() << "Asked for an unknown action:" << printable(name);
}

} // namespace quillet
