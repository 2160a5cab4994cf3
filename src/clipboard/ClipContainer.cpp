#include "clipboard/ClipContainer.h"
#include "clipboard/ClipRescue.h"
#include "clipboard/ClipTable.h"

#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <set>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quillet {

using namespace Qt::StringLiterals;
using ClipRescue::Health;

namespace {

QString systemError(const QString& subject) {
    return subject + u": "_s + QString::fromStdString(std::generic_category().message(errno));
}

/// Makes the folder and its database file accessible to their owner only. Returns what went wrong.
QString makePrivate(const ClipFiles& files) {
    for (const QString& folder : {files.folder, files.blobs()}) {
        if (!QDir().mkpath(folder))
            return u"%1: The folder cannot be made."_s.arg(folder);
        const QByteArray path = QFile::encodeName(folder);
        if (chmod(path.constData(), S_IRWXU) != 0 ||
            access(path.constData(), R_OK | W_OK | X_OK) != 0)
            return systemError(folder);
    }
    return {};
}

/// Creates the database file, if it is missing, before the database does: the files beside it get
/// its permissions.
QString makeDatabaseFile(const QString& path) {
    chmod(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR); // where it is there already
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                                  S_IRUSR | S_IWUSR);
    if (descriptor < 0 || fchmod(descriptor, S_IRUSR | S_IWUSR) != 0)
        return systemError(path);
    close(descriptor);
    return {};
}

/// Takes the folder for this process, until the file is closed or the process ends in whatever
/// way. Null when another one has it.
std::unique_ptr<QFile> takeLock(const ClipFiles& files) {
    auto file = std::make_unique<QFile>();
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    const int descriptor = ::open(QFile::encodeName(files.lock()).constData(),
                                  O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0 || !file->open(descriptor, QIODevice::ReadWrite, QFile::AutoCloseHandle) ||
        fcntl(file->handle(), F_OFD_SETLK, &whole) != 0)
        return nullptr;
    return file;
}

} // namespace

ClipContainer::Opening ClipContainer::open(const QString& folder, Scheduler& scheduler) {
    const ClipFiles files{folder};
    if (const QString problem = makePrivate(files); !problem.isEmpty())
        return {nullptr, problem};

    std::unique_ptr<QFile> lock = takeLock(files);
    if (!lock)
        return {nullptr, u"%1: Another process uses this history."_s.arg(folder)};
    ClipRescue::finishInterrupted(files);
    QString problem;
    const Health health = ClipRescue::examine(files, problem);
    if (health == Health::unavailable)
        return {nullptr, problem};
    if (health != Health::healthy && !ClipRescue::startOver(files, health, scheduler.now()))
        return {nullptr, u"%1: The damaged history could not be moved aside."_s.arg(folder)};

    if (problem = makeDatabaseFile(files.database()); !problem.isEmpty())
        return {nullptr, problem};
    std::unique_ptr<ClipContainer> container(new ClipContainer(files, std::move(lock), scheduler));
    if (!container->prepare())
        return {nullptr, container->m_database.error().databaseText()};
    container->removeOrphans();
    return {std::move(container), {}};
}

ClipContainer::ClipContainer(ClipFiles files, std::unique_ptr<QFile> lock, Scheduler& scheduler)
    : m_files(std::move(files)),
      m_lock(std::move(lock)),
      m_database(m_files.database(), SqliteConnection::Access::readWrite),
      m_checkpointer(m_files.database(), scheduler),
      m_context(m_database, m_files.blobs(), m_checkpointer) {}

/// Sets the connection up and brings the schema to the present version.
bool ClipContainer::prepare() {
    for (const QString& setting :
         {u"PRAGMA journal_mode = WAL"_s, u"PRAGMA synchronous = NORMAL"_s,
          u"PRAGMA secure_delete = ON"_s, u"PRAGMA wal_autocheckpoint = 0"_s}) {
        if (!m_database.run(setting))
            return false;
    }
    const auto version = m_database.value(u"PRAGMA user_version"_s);
    if (!version)
        return false;
    if (version->toInt() == ClipTable::schemaVersion)
        return true;
    return m_database.transaction([this] {
        return m_database.run(ClipTable::createStatement) &&
               m_database.run(u"PRAGMA user_version = %1"_s.arg(ClipTable::schemaVersion));
    });
}

/// Removes the files of clips that no row knows: those that a crash left between file and row.
void ClipContainer::removeOrphans() {
    const auto items = m_context.fetch(ClipContext::Filter::all);
    if (!items)
        return; // which files are orphans is unknown
    std::set<QString> known;
    for (const auto& item : *items)
        known.insert(ClipTable::idText(item->id()));
    for (const QFileInfo& file : QDir(m_files.blobs()).entryInfoList(QDir::Files | QDir::Hidden)) {
        // A file that was still being written has a name that goes on after the extension.
        const QString name = file.completeBaseName();
        if (!known.contains(name))
            QFile::remove(file.filePath());
    }
    m_checkpointer.runSoon(); // a crash may have left deleted text in the log
}

} // namespace quillet
