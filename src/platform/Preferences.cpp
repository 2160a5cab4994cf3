#include "platform/Preferences.h"

namespace quillet {

void Preferences::remove(const QString& name) {
    m_stored.remove(name);
    finishWrite();
}

Preferences::Observation Preferences::observe(std::function<void()> handler) {
    Observation observation = std::make_shared<char>();
    m_observers.push_back({observation, std::move(handler)});
    return observation;
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
    const auto ended = [](const Observer& observer) { return observer.observation.expired(); };
    std::erase_if(m_observers, ended);
    const auto observers = m_observers; // a handler may write, observe or let go
    for (const Observer& observer : observers) {
        if (!ended(observer))
            observer.handler();
    }
}

} // namespace quillet
