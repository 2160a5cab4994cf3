#include "platform/linux/dbus/SleepInhibitors.h"

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

using Type = Power::AssertionType;

const QString who = u"Quillet"_s;

QVariantList logindArguments(Type type, const QString& reason) {
    // To block "idle" would also keep the display on and unlocked.
    const bool mayDisplaySleep = type == Type::preventUserIdleSystemSleep;
    return {mayDisplaySleep ? u"sleep"_s : u"sleep:idle"_s, who, reason, u"block"_s};
}

QVariantList sessionArguments(Type type, const QString& reason) {
    constexpr uint suspend = 4;
    constexpr uint idle = 8;
    constexpr uint window = 0; // none of ours
    const bool mayDisplaySleep = type == Type::preventUserIdleSystemSleep;
    return {who, window, reason, mayDisplaySleep ? suspend : suspend | idle};
}

QVariantList suspendArguments(Type, const QString& reason) {
    return {who, reason};
}

QVariantList displayArguments(Type type, const QString& reason) {
    return type == Type::preventUserIdleDisplaySleep ? QVariantList{who, reason} : QVariantList();
}

} // namespace

const std::vector<SleepInhibitor>& sleepInhibitors() {
    using Bus = SleepInhibitor::Bus;
    static const std::vector<SleepInhibitor> inhibitors = {
        {Bus::system,
         u"org.freedesktop.login1"_s,
         u"/org/freedesktop/login1"_s,
         {},
         u"org.freedesktop.login1.Manager"_s,
         {},
         logindArguments},
        {Bus::session,
         u"org.gnome.SessionManager"_s,
         u"/org/gnome/SessionManager"_s,
         {},
         u"org.gnome.SessionManager"_s,
         u"Uninhibit"_s,
         sessionArguments},
        {Bus::session,
         u"org.freedesktop.PowerManagement"_s,
         u"/org/freedesktop/PowerManagement/Inhibit"_s,
         {},
         u"org.freedesktop.PowerManagement.Inhibit"_s,
         u"UnInhibit"_s,
         suspendArguments},
        {Bus::session, u"org.freedesktop.ScreenSaver"_s, u"/org/freedesktop/ScreenSaver"_s,
         u"/ScreenSaver"_s, u"org.freedesktop.ScreenSaver"_s, u"UnInhibit"_s, displayArguments},
    };
    return inhibitors;
}

std::unique_ptr<SleepGrant> SleepGrant::from(const QDBusMessage& reply,
                                             const SleepInhibitor& inhibitor,
                                             const QDBusConnection& bus, const QString& path) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return nullptr;
    const QVariant granted = reply.arguments().constFirst();
    if (inhibitor.release.isEmpty()) {
        std::unique_ptr<SleepGrant> grant(new SleepGrant(bus, {}));
        grant->m_file = granted.value<QDBusUnixFileDescriptor>();
        return grant->m_file.isValid() ? std::move(grant) : nullptr;
    }
    if (!granted.canConvert<uint>())
        return nullptr;
    auto release = QDBusMessage::createMethodCall(reply.service(), path, inhibitor.interface,
                                                  inhibitor.release);
    release << granted.toUInt();
    return std::unique_ptr<SleepGrant>(new SleepGrant(bus, release));
}

SleepGrant::SleepGrant(const QDBusConnection& bus, const QDBusMessage& release)
    : m_bus(bus), m_release(release) {}

SleepGrant::~SleepGrant() {
    if (m_release.type() == QDBusMessage::MethodCallMessage)
        m_bus.send(m_release);
}

} // namespace quillet
