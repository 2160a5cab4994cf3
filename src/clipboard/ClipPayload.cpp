#include "clipboard/ClipPayload.h"

#include <algorithm>
#include <fcntl.h>
#include <memory>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <unistd.h>

namespace quillet {

namespace {

/// Reads a part of a file through its descriptor. Leaves the file position alone, so that several
/// threads may do so at once.
std::optional<QByteArray> readPart(int descriptor, qint64 offset, qint64 size) {
    QByteArray bytes(size, Qt::Uninitialized);
    qint64 done = 0;
    while (done < size) {
        const auto count =
            pread(descriptor, bytes.data() + done, size_t(size - done), offset + done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return std::nullopt;
        done += count;
    }
    return bytes;
}

/// The file, if it is there and of this size.
std::shared_ptr<QFile> openFile(const QString& path, qint64 size) {
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly | QIODevice::Unbuffered) || file->size() != size)
        return nullptr;
    return file;
}

/// Makes a new name in a folder permanent.
void syncFolder(const QString& path) {
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return; // the bytes are safe; at worst a power cut loses the name
    fsync(descriptor);
    close(descriptor);
}

} // namespace

bool ClipPayload::store(const QString& path) {
    if (!writeFile(path, m_bytes))
        return false;
    m_path = path;
    m_bytes.clear();
    return true;
}

std::optional<QByteArray> ClipPayload::read(qint64 offset, qint64 count) const {
    const qint64 start = std::clamp<qint64>(offset, 0, m_size);
    const qint64 length = std::min(count, m_size - start);
    if (!isStored())
        return m_bytes.mid(start, length);
    const auto file = openFile(m_path, m_size);
    return file ? readPart(file->handle(), start, length) : std::nullopt;
}

std::function<QByteArray()> ClipPayload::source() const {
    if (!isStored())
        return [bytes = m_bytes] { return bytes; };
    auto file = openFile(m_path, m_size);
    if (!file)
        return nullptr;
    return
        [file, size = m_size] { return readPart(file->handle(), 0, size).value_or(QByteArray()); };
}

bool ClipPayload::writeFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    // Unbuffered, for a full disk to show in write() and not to pass unnoticed later.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) ||
        file.write(bytes) != bytes.size() || !file.commit())
        return false;
    syncFolder(QFileInfo(path).path());
    return true;
}

} // namespace quillet
