#include "app/InstanceLock.h"

#include "app/Logging.h"

#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

struct flock wholeFile() {
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    return range;
}

} // namespace

InstanceLock::InstanceLock(const QString& folder)
    : m_file(open(QFile::encodeName(folder + u"/lock"_s).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                  0600)) {
    if (m_file < 0)
        qCWarning(logApp).noquote()
            << "Cannot open the lock file in" << folder << ":" << std::strerror(errno);
}

InstanceLock::~InstanceLock() {
    if (m_file >= 0)
        close(m_file);
}

bool InstanceLock::acquire() {
    struct flock range = wholeFile();
    if (m_file < 0 || fcntl(m_file, F_OFD_SETLK, &range) != 0)
        return false;
    const QByteArray pid = QByteArray::number(getpid()) + '\n';
    // The id is for people; the lock alone decides.
    if (ftruncate(m_file, 0) != 0 || pwrite(m_file, pid.constData(), size_t(pid.size()), 0) < 0)
        qCWarning(logApp) << "Cannot note the process id:" << std::strerror(errno);
    return true;
}

bool InstanceLock::isHeldElsewhere() const {
    struct flock range = wholeFile();
    return m_file >= 0 && fcntl(m_file, F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

} // namespace quillet
