#include "shelf/PictureContent.h"

#include <QUrl>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

const QString pngType = u"image/png"_s;
const QString urlsType = u"text/uri-list"_s;

} // namespace

PictureContent::PictureContent(DragFile::Source png, std::shared_ptr<DragFile> file)
    : m_png(std::move(png)), m_file(std::move(file)) {}

QStringList PictureContent::formats() const {
    return {pngType, urlsType};
}

QVariant PictureContent::retrieveData(const QString& format, QMetaType) const {
    if (format == pngType)
        return m_png();
    const QString path = format == urlsType ? m_file->write(m_png) : QString();
    return path.isEmpty() ? QVariant() : QVariantList{QUrl::fromLocalFile(path)};
}

} // namespace quillet
