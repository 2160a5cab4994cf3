#pragma once

#include <functional>
#include <QByteArray>
#include <QString>

namespace quillet {

enum class ExitCode { done = 0, failed = 1, usage = 2 };

/// What a verb came to: bytes for standard output and one line for standard error.
struct VerbResult {
    ExitCode code = ExitCode::done;
    QByteArray output;
    QString message;

    /// Makes the output, off the main thread, where that takes its time.
    std::function<QByteArray()> slowOutput{};

    static VerbResult done(const QByteArray& output = {}) {
        return {ExitCode::done, output, {}, {}};
    }
    static VerbResult failed(const QString& message) { return {ExitCode::failed, {}, message, {}}; }
};

} // namespace quillet
