#include "platform/Preferences.h"

#include <algorithm>
#include <limits>

namespace quillet {

void Preferences::remove(const QString& name) {
    m_stored.remove(name);
    finishWrite();
}

QVariant Preferences::object(const QString& name) const {
    const auto stored = m_stored.find(name);
    const bool isThere = stored != m_stored.end() && stored->typeId() != QMetaType::Nullptr;
    return isThere ? *stored : m_defaults.value(name);
}

int Preferences::integer(const QString& name) const {
    using Limits = std::numeric_limits<int>;
    // Doubles hold every int, and what lies beyond is only to be told from it.
    const double number = object(name).toDouble();
    return number == number
               ? static_cast<int>(std::clamp<double>(number, Limits::min(), Limits::max()))
               : 0;
}

void Preferences::setObject(const QString& name, const QVariant& value) {
    m_stored.insert(name, value);
    finishWrite();
}

void Preferences::finishWrite() {
    persist(m_stored);
    m_observers.notify();
}

} // namespace quillet
