#pragma once

#include <functional>
#include <optional>
#include <QByteArray>
#include <QString>

namespace quillet {

/// The large part of a clip: an image's PNG or the UTF-8 of a long text. The bytes are held in
/// memory until they are in their file, and read from there whenever they are asked for. A value;
/// copies may be used on any thread.
class ClipPayload {
public:
    /// Bytes that are in no file yet.
    explicit ClipPayload(QByteArray bytes) : m_bytes(std::move(bytes)), m_size(m_bytes.size()) {}

    /// Bytes that are in a file, or were when it was written.
    ClipPayload(QString path, qint64 size) : m_path(std::move(path)), m_size(size) {}

    qint64 size() const { return m_size; }
    bool isStored() const { return !m_path.isEmpty(); }

    /// Writes the bytes to a file and lets go of them. False when it failed: they stay here.
    bool store(const QString& path);

    /// The bytes; absent when the file is missing or not of the recorded size.
    std::optional<QByteArray> read() const { return read(0, m_size); }

    /// A part of the bytes, as far as there are any.
    std::optional<QByteArray> read(qint64 offset, qint64 count) const;

    /// A function that yields the bytes, also after the file has been removed. Null when there is
    /// nothing to read now; it yields a null byte array when reading fails later.
    std::function<QByteArray()> source() const;

    /// Writes a file so that after a crash it is either there as a whole or not at all.
    static bool writeFile(const QString& path, const QByteArray& bytes);

private:
    QByteArray m_bytes;
    QString m_path;
    qint64 m_size = 0;
};

} // namespace quillet
