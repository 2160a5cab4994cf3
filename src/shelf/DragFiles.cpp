#include "shelf/DragFiles.h"
#include "shelf/ShelfLog.h"

#include <QDir>
#include <QSaveFile>

namespace quillet {

using namespace Qt::StringLiterals;

DragFiles::DragFiles(QString folder) : m_folder(std::move(folder)) {
    QDir(m_folder).removeRecursively();
}

DragFiles::~DragFiles() {
    QDir(m_folder).removeRecursively();
}

QString DragFiles::write(const QString& name, const QByteArray& png) {
    // A folder for each, so that two pictures may have the same name.
    const QString folder = u"%1/%2"_s.arg(m_folder).arg(++m_count);
    const QString path = folder + u'/' + name;
    QSaveFile file(path);
    if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) ||
        file.write(png) != png.size() || !file.commit()) {
        qCWarning(logShelf) << "A picture to drag out could not be written to" << path << ":"
                            << file.errorString();
        return {};
    }
    return path;
}

} // namespace quillet
