#include "shelf/DragFiles.h"
#include "shelf/ShelfLog.h"

#include <QDir>
#include <QSaveFile>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

// What the user copied is nobody else's business.
constexpr auto ownFile = QFile::ReadOwner | QFile::WriteOwner;
constexpr auto ownFolder = ownFile | QFile::ExeOwner;

bool makeOwnFolder(const QString& path) {
    return QFileInfo(path).isDir() || QDir().mkdir(path, ownFolder);
}

} // namespace

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
    if (!QDir().mkpath(QFileInfo(m_folder).path()) || !makeOwnFolder(m_folder) ||
        !makeOwnFolder(folder) || !file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(ownFile) || file.write(png) != png.size() || !file.commit()) {
        qCWarning(logShelf) << "A picture to drag out could not be written to" << path << ":"
                            << file.errorString();
        return {};
    }
    return path;
}

} // namespace quillet
