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

void makeOwnFolder(const QString& path) {
    if (!QFileInfo(path).isDir())
        QDir().mkdir(path, ownFolder);
}

} // namespace

DragFiles::DragFiles(QString folder) : m_folder(std::move(folder)) {
    QDir(m_folder).removeRecursively();
}

DragFiles::~DragFiles() {
    QDir(m_folder).removeRecursively();
}

QString DragFile::write(const Source& png) {
    const std::lock_guard lock(m_writing);
    if (QFileInfo::exists(m_path))
        return m_path;
    const QByteArray bytes = png();
    QSaveFile file(m_path);
    if (bytes.isNull() || !file.open(QIODevice::WriteOnly) || !file.setPermissions(ownFile) ||
        file.write(bytes) != bytes.size() || !file.commit()) {
        qCWarning(logShelf) << "A picture to drag out could not be written to" << m_path << ":"
                            << file.errorString();
        return {};
    }
    return m_path;
}

std::shared_ptr<DragFile> DragFiles::file(const QUuid& clip, const QString& name) {
    // A folder for each, so that two pictures may have the same name.
    const QString folder = m_folder + u'/' + clip.toString(QUuid::WithoutBraces);
    auto& file = m_files[clip];
    if (!file)
        file = std::make_shared<DragFile>(folder + u'/' + name);
    // Where this fails, so does writing.
    QDir().mkpath(QFileInfo(m_folder).path());
    makeOwnFolder(m_folder);
    makeOwnFolder(folder);
    return file;
}

} // namespace quillet
