#include "app/RuntimeFolder.h"

#include "app/Logging.h"

#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

bool isOwnFolder(const QString& path) {
    struct stat status {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid();
}

/// Makes the folder where it is missing and closes it to others where it is open.
bool secureFolder(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    mkdir(name.constData(), 0700);
    return isOwnFolder(path) && chmod(name.constData(), 0700) == 0 &&
           access(name.constData(), W_OK | X_OK) == 0;
}

} // namespace

std::optional<QString> runtimeFolder() {
    const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (session.startsWith(u'/') && isOwnFolder(session)) {
        const QString folder = session + u"/quillet"_s;
        if (secureFolder(folder))
            return folder;
    }
    const QString temporary = qEnvironmentVariable("TMPDIR", u"/tmp"_s);
    const QString folder = u"%1/quillet-%2"_s.arg(temporary).arg(geteuid());
    if (secureFolder(folder))
        return folder;
    qCWarning(logApp).noquote() << "No safe place for the lock file: tried" << session << "and"
                                << folder;
    return std::nullopt;
}

} // namespace quillet
