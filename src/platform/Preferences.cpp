#include "platform/Preferences.h"

namespace quillet {

void Preferences::remove(const QString& name) {
    m_stored.remove(name);
    finishWrite();
}

Preferences::Observation Preferences::observe(std::function<void()> handler) {
    auto observer = std::make_shared<std::function<void()>>(std::move(handler));
    m_observers.push_back(observer);
    return observer;
}

QVariant Preferences::object(const QString& name) const {
    const auto stored = m_stored.find(name);
    return stored != m_stored.end() ? *stored : m_defaults.value(name);
}

void Preferences::setObject(const QString& name, const QVariant& value) {
    m_stored.insert(name, value);
    finishWrite();
}

void Preferences::finishWrite() {
    persist(m_stored);
    std::erase_if(m_observers, [](const auto& observer) { return observer.expired(); });
    const auto observers = m_observers; // a handler may write, observe or let go
    for (const auto& weak : observers) {
        if (const auto observer = weak.lock())
            (*observer)();
    }
}

} // namespace quillet
