#include "platform/linux/dbus/SettingsPortal.h"

#include "platform/linux/dbus/Buses.h"

#include <QDBusError>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

/// In milliseconds. A portal that takes longer to start is noticed when it has appeared.
constexpr int patience = 3000;

const QString readOne = u"ReadOne"_s;
const QString olderRead = u"Read"_s;

/// The older way of reading wraps a value twice.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

SettingsPortal::SettingsPortal(const QDBusConnection& session)
    : m_session(session), m_watcher(service, session, QDBusServiceWatcher::WatchForRegistration) {
    // Without the service's name, whose owner the library would wait to be told.
    m_session.connect(QString(), path, interface, u"SettingChanged"_s, this,
                      SLOT(noteChange(QDBusMessage)));
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (onAppeared)
            onAppeared();
    });
}

void SettingsPortal::read(const Name& name, Completion completion) {
    ask(readOne, name, std::move(completion));
}

void SettingsPortal::ask(const QString& method, const Name& name, Completion completion) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message << name.space << name.key;
    const auto finish = [this, method, name,
                         completion = std::move(completion)](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
            completion(unwrapped(reply.arguments().constFirst()));
        else if (method == readOne && QDBusError(reply).type() == QDBusError::UnknownMethod)
            ask(olderRead, name, completion);
        else
            completion(std::nullopt);
    };
    callAsync(m_session, message, this, finish, patience);
}

void SettingsPortal::noteChange(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    if (arguments.size() == 3 && onChanged)
        onChanged({arguments[0].toString(), arguments[1].toString()}, unwrapped(arguments[2]));
}

} // namespace quillet
