#pragma once

#include <functional>
#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quillet {

struct CommandResult {
    int exitCode = -1;        ///< -1 when the program could not be started or was ended
    QByteArray output;        ///< standard output, whole
    bool tookTooLong = false; ///< and was ended for that
};

/// External programs, run in the background.
class Commands {
public:
    using Completion = std::function<void(CommandResult)>;

    virtual ~Commands() = default;

    /// Runs `program` (a path, or a name looked up in PATH) without a shell, and ends it when that
    /// takes longer than some seconds. `completion` runs once on the main thread, never inside the
    /// call; it is dropped when this object dies first.
    virtual void run(const QString& program, const QStringList& arguments,
                     Completion completion) = 0;

    /// Starts `program`, likewise without a shell, and lets go of it: it goes on when this process
    /// ends. False when it could not be started.
    virtual bool launch(const QString& program, const QStringList& arguments) = 0;
};

} // namespace quillet
