#pragma once

#include "platform/Observers.h"

#include <QString>
#include <QStringList>
#include <QVariant>

namespace quillet {

/// A preference's dotted name, its type and its default.
/// T is bool, int, double, QString, QStringList or QByteArray (a data item).
template<typename T>
struct PreferenceKey {
    QString name;
    T fallback;
};

/// The user's settings: stored values over registered defaults, under dotted names.
///
/// Reads are lenient: what is stored under a name with another type than asked for is converted
/// where that makes sense ("42" is the integer 42) and reads as the type's zero value where it
/// does not; an integer too large for its type is the largest one there is. Writes reach the store
/// before they return; a write that fails stays in memory, goes out with the next one, and logs one
/// line.
class Preferences {
public:
    /// Ends its observation when destroyed.
    using Observation = Observers::Observation;

    virtual ~Preferences() = default;

    /// The value to use while nothing is stored under the key's name. Not written to the store.
    template<typename T>
    void registerDefault(const PreferenceKey<T>& key) {
        m_defaults.insert(key.name, QVariant::fromValue(key.fallback));
    }

    /// The stored value, else the registered default, else the type's zero value.
    template<typename T>
    T value(const PreferenceKey<T>& key) const {
        if constexpr (std::is_same_v<T, int>)
            return integer(key.name);
        else
            return object(key.name).template value<T>();
    }

    template<typename T>
    void set(const PreferenceKey<T>& key, const T& value) {
        setObject(key.name, QVariant::fromValue(value));
    }

    /// Whether a value is stored; a default does not count.
    bool isStored(const QString& name) const { return m_stored.contains(name); }

    /// Forgets what is stored, so that the default shows again.
    void remove(const QString& name);

    /// `handler` runs after every write or removal, also one that changed nothing.
    [[nodiscard]] Observation observe(std::function<void()> handler) {
        return m_observers.add(std::move(handler));
    }

protected:
    /// Makes the whole of the stored values permanent.
    virtual void persist(const QVariantMap& stored) = 0;

    void restore(QVariantMap stored) { m_stored = std::move(stored); }

private:
    QVariant object(const QString& name) const;
    int integer(const QString& name) const;
    void setObject(const QString& name, const QVariant& value);
    void finishWrite();

    QVariantMap m_defaults;
    QVariantMap m_stored;
    Observers m_observers;
};

} // namespace quillet
