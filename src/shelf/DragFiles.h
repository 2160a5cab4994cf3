#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <QByteArray>
#include <QUuid>

namespace quillet {

/// The file of one picture. Any thread may use it.
class DragFile {
public:
    using Source = std::function<QByteArray()>;

    explicit DragFile(QString path) : m_path(std::move(path)) {}

    /// Writes the file unless it is there; waits where that is under way. Its path; empty when it
    /// cannot be written.
    QString write(const Source& png);

private:
    const QString m_path;
    std::mutex m_writing;
};

/// Files for pictures that are dragged out: many programs take nothing else. A file stays until the
/// program ends, because nobody tells when its receiver has read it; what an earlier run left
/// behind goes first.
class DragFiles {
public:
    /// `folder` is used for nothing else.
    explicit DragFiles(QString folder);
    ~DragFiles();
    DragFiles(const DragFiles&) = delete;
    DragFiles& operator=(const DragFiles&) = delete;

    /// The file for a clip's picture: always the same, under the name that it got first.
    std::shared_ptr<DragFile> file(const QUuid& clip, const QString& name);

private:
    QString m_folder;
    std::map<QUuid, std::shared_ptr<DragFile>> m_files;
};

} // namespace quillet
