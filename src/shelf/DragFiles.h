#pragma once

#include <QByteArray>
#include <QString>

namespace quillet {

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

    /// The path of a new file with these bytes; empty when it cannot be written.
    QString write(const QString& name, const QByteArray& png);

private:
    QString m_folder;
    int m_count = 0;
};

} // namespace quillet
