#include "app/BackgroundStart.h"

#include "app/Logging.h"

#include <csignal>
#include <fcntl.h>
#include <QCoreApplication>
#include <QFile>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

bool BackgroundStart::start() {
    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&streams, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    // Nothing of the caller's is kept busy: neither a lock or pipe nor a mounted folder.
    posix_spawn_file_actions_addclosefrom_np(&streams, STDERR_FILENO + 1);
    posix_spawn_file_actions_addchdir_np(&streams, "/");

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t ignoredHere;
    sigemptyset(&ignoredHere);
    sigaddset(&ignoredHere, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &ignoredHere);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF);

    QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    char service[] = "--service";
    char* const arguments[]{program.data(), service, nullptr};
    pid_t process = 0;
    m_failed =
        posix_spawn(&process, program.constData(), &streams, &attributes, arguments, environ) != 0;
    if (!m_failed)
        m_process = process;

    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&streams);
    return !m_failed;
}

bool BackgroundStart::isRunning() {
    int status = 0;
    if (m_process && waitpid(*m_process, &status, WNOHANG) != 0) {
        m_process.reset();
        m_failed = !WIFEXITED(status) || WEXITSTATUS(status) != 0;
    }
    return m_process.has_value();
}

void moveStandardErrorToLog(const QString& runtimeFolder) {
    const int log = open(QFile::encodeName(runtimeFolder + u"/log"_s).constData(),
                         O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
    if (log < 0) {
        qCWarning(logApp) << "No log file; the log goes on here";
        return;
    }
    dup2(log, STDERR_FILENO);
    close(log);
}

} // namespace quillet
