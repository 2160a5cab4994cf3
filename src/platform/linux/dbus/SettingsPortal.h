#pragma once

#include <functional>
#include <optional>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QVariant>

namespace quillet {

/// The settings that a desktop shares with all programs, through its portal. No call waits.
class SettingsPortal : public QObject {
    Q_OBJECT

public:
    struct Name {
        QString space;
        QString key;
        bool operator==(const Name&) const = default;
    };
    using Completion = std::function<void(std::optional<QVariant>)>;

    explicit SettingsPortal(const QDBusConnection& session);

    /// Asks for a value, starting the portal where need be. `completion` gets none where there is
    /// no portal or it does not know the name; it never runs inside the call, and not once this is
    /// gone.
    void read(const Name& name, Completion completion);

    std::function<void(const Name& name, const QVariant& value)> onChanged;

    /// Called when a portal has appeared, the first one or another.
    std::function<void()> onAppeared;

private Q_SLOTS:
    void noteChange(const QDBusMessage& signal);

private:
    void ask(const QString& method, const Name& name, Completion completion);

    QDBusConnection m_session;
    QDBusServiceWatcher m_watcher;
};

} // namespace quillet
