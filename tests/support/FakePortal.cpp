#include "support/FakePortal.h"

#include <QDBusVariant>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

QVariant wrapped(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

} // namespace

FakePortal::FakePortal(PrivateBus& bus, std::map<Setting, QVariant> stored, bool isOld)
    : FakeService(bus, u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s),
      m_values(std::move(stored)) {
    answers[isOld ? u"Read"_s : u"ReadOne"_s] = [this, isOld](const QDBusMessage& call) {
        const auto value =
            m_values.find({call.arguments().at(0).toString(), call.arguments().at(1).toString()});
        if (value == m_values.end())
            return call.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, {});
        const QVariant once = wrapped(value->second);
        return call.createReply(isOld ? wrapped(once) : once);
    };
}

void FakePortal::change(const Setting& setting, const QVariant& value) {
    m_values[setting] = value;
    emitSignal(u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
               {setting.first, setting.second, wrapped(value)});
}

} // namespace quillet
