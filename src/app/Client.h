#pragma once

#include "app/CommandLine.h"
#include "app/InstanceLock.h"

#include <chrono>
#include <optional>
#include <QDBusConnection>
#include <QVariant>
#include <variant>

namespace quillet {

/// A command line's way to the running Quillet, which it starts where the verb needs one. Light:
/// no display, no widgets.
class Client {
public:
    explicit Client(const QString& runtimeFolder);

    /// Runs the command in the running Quillet, copies its output to standard output and its
    /// message to standard error, and returns the exit code.
    int run(const Command& command, const QStringList& arguments);

    /// Tells the running Quillet that it was started again. False when there is none any more.
    bool activate();

private:
    struct Door {
        QDBusConnection connection;
        QString service; ///< empty on a private socket
    };
    enum class WhenAbsent { start, leave };

    std::optional<Door> reach(WhenAbsent whenAbsent) const;
    std::optional<Door> knock() const;
    bool awaitEnd(const Door& door) const;

    static std::variant<QVariantList, QString> call(const Door& door, const QString& interface,
                                                    const QString& method,
                                                    const QVariantList& arguments,
                                                    std::chrono::milliseconds patience);
    static std::variant<QVariantList, QString> ask(const Door& door, const QStringList& arguments);
    static int forward(const Door& door, const QStringList& arguments);
    static int reportAbsence(const Command& command);

    QString m_folder;
    InstanceLock m_lock;
};

} // namespace quillet
