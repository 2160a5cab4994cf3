#pragma once

#include "shelf/DragFiles.h"

#include <QMimeData>

namespace quillet {

/// What leaves the shelf when a picture is dragged out: its bytes and a file with them. Both are
/// fetched when the receiver asks, since a drag must not wait for the disk to begin.
class PictureContent : public QMimeData {
    Q_OBJECT

public:
    PictureContent(DragFile::Source png, std::shared_ptr<DragFile> file);

    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override;

private:
    DragFile::Source m_png;
    std::shared_ptr<DragFile> m_file;
};

} // namespace quillet
