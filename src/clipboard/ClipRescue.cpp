#include "clipboard/ClipRescue.h"
#include "clipboard/ClipboardLog.h"
#include "clipboard/ClipTable.h"
#include "clipboard/SqliteConnection.h"

#include <algorithm>
#include <array>
#include <map>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <set>

namespace quillet::ClipRescue {

using namespace Qt::StringLiterals;
using Access = SqliteConnection::Access;

namespace {

constexpr auto logSuffix = "-wal"_L1;
constexpr auto indexSuffix = "-shm"_L1;

Health healthAfter(const QSqlError& error) {
    constexpr int primaryCodeMask = 0xff;
    constexpr std::array damageCodes{1, 11, 26}; // unsupported format, corrupt, not a database
    const int code = error.nativeErrorCode().toInt() & primaryCodeMask;
    return std::ranges::find(damageCodes, code) != damageCodes.end() ? Health::damaged
                                                                     : Health::unavailable;
}

/// Adds the rows of one pass over the table to `rows`. Returns the last row id that it reached,
/// absent when it reached none; `isComplete` tells whether it came to the end.
std::optional<qint64> collect(QSqlQuery query, const QString& blobFolder,
                              std::map<qint64, ClipItem::Fields>& rows, bool& isComplete) {
    std::optional<qint64> last;
    const bool hasStarted = query.exec();
    while (hasStarted && query.next()) {
        last = ClipTable::rowIDInRow(query);
        if (auto fields = ClipTable::fieldsInRow(query, blobFolder))
            rows.emplace(*last, *std::move(fields));
    }
    isComplete = hasStarted && !query.lastError().isValid();
    return last;
}

bool writeFresh(const QString& path, const std::vector<ClipItem::Fields>& rows) {
    QFile::remove(path);
    SqliteConnection database(path, Access::readWrite);
    return database.transaction([&] {
        if (!database.run(ClipTable::createStatement) ||
            !database.run(u"PRAGMA user_version = %1"_s.arg(ClipTable::schemaVersion)))
            return false;
        QSqlQuery query = database.prepare(ClipTable::insertStatement);
        return std::ranges::all_of(rows, [&](const ClipItem::Fields& fields) {
            ClipTable::bindAll(query, fields);
            return query.exec();
        });
    });
}

/// A name in the data folder that is not taken yet.
QString keptName(const ClipFiles& files, Health health, const QDateTime& now) {
    const QString base = files.folder +
                         (health == Health::newer ? u"/clips-newer-"_s : u"/clips-damaged-"_s) +
                         now.toString(u"yyyy-MM-dd'T'HH.mm.ss"_s);
    QString name = base;
    for (int number = 2; QFileInfo::exists(name + u".sqlite"_s) || QFileInfo::exists(name);
         ++number)
        name = base + u'-' + QString::number(number);
    return name;
}

/// Moves the log of a database beside the file that the database became: left behind, it would be
/// taken for that of the next database.
bool moveLog(const ClipFiles& files, const QString& kept) {
    QFile::remove(files.database() + indexSuffix);
    const QString log = files.database() + logSuffix;
    if (QFileInfo(log).size() == 0)
        return !QFileInfo::exists(log) || QFile::remove(log);
    QFile::remove(kept + logSuffix);
    return QFile::rename(log, kept + logSuffix);
}

/// Moves the files of clips that no row knows to a folder of their own.
void keepUnknownBlobs(const ClipFiles& files, const std::vector<ClipItem::Fields>& rows,
                      const QString& folder) {
    std::set<QString> known;
    for (const ClipItem::Fields& fields : rows)
        known.insert(ClipTable::idText(fields.id));
    for (const QFileInfo& file : QDir(files.blobs()).entryInfoList(QDir::Files | QDir::Hidden)) {
        if (known.contains(file.completeBaseName()))
            continue;
        QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile::rename(file.filePath(), folder + u'/' + file.fileName());
    }
}

} // namespace

Health examine(const ClipFiles& files, QString& problem) {
    const QFileInfo file(files.database());
    if (!file.exists() || file.size() == 0)
        // A new history has no files of clips yet; where there are some, their rows are lost.
        return QDir(files.blobs()).isEmpty() ? Health::healthy : Health::damaged;
    if (!file.isFile())
        return Health::damaged;

    SqliteConnection database(files.database(), Access::readOnly);
    const auto version = database.value(u"PRAGMA user_version"_s);
    const auto tables = database.value(u"SELECT count(*) FROM sqlite_master"_s);
    const auto verdict = database.value(u"PRAGMA quick_check(1)"_s);
    if (!version || !tables || !verdict) {
        problem = database.error().databaseText();
        return healthAfter(database.error());
    }
    problem = verdict->toString();
    if (version->toInt() > ClipTable::schemaVersion)
        return Health::newer;
    if (verdict->toString() != "ok"_L1)
        return Health::damaged;
    if (version->toInt() == 0)
        return tables->toInt() == 0 ? Health::healthy : Health::damaged;
    const bool hasOurTable = !database.prepare(ClipTable::selectStatement).lastError().isValid();
    return hasOurTable ? Health::healthy : Health::damaged;
}

bool startOver(const ClipFiles& files, Health health, const QDateTime& now) {
    const auto rows = readableRows(files.database(), files.blobs());
    if (!writeFresh(files.rescued(), rows))
        return false;

    const QString kept = keptName(files, health, now);
    // Before the fresh database is in place: the next launch would sweep them away.
    keepUnknownBlobs(files, rows, kept + u"-blobs"_s);
    // The database goes first: as long as it is there, what was rescued counts as incomplete.
    if (QFileInfo::exists(files.database()) &&
        !QFile::rename(files.database(), kept + u".sqlite"_s))
        return false;
    if (!moveLog(files, kept + u".sqlite"_s))
        return false;
    if (!QFile::rename(files.rescued(), files.database()))
        return false;
    qCWarning(logClipboard) << "The clipboard history could not be used. It is kept as"
                            << kept + u".sqlite"_s << "and" << rows.size()
                            << "items of it were carried over.";
    return true;
}

void finishInterrupted(const ClipFiles& files) {
    if (!QFileInfo::exists(files.rescued()))
        return;
    if (QFileInfo::exists(files.database()))
        QFile::remove(files.rescued());
    else if (moveLog(files, files.folder + u"/clips-interrupted.sqlite"_s))
        QFile::rename(files.rescued(), files.database());
}

std::vector<ClipItem::Fields> readableRows(const QString& databasePath, const QString& blobFolder) {
    std::map<qint64, ClipItem::Fields> rows;
    if (QFileInfo(databasePath).isFile()) {
        SqliteConnection database(databasePath, Access::readOnly);
        // Without this nothing is read of a file that was cut short.
        database.run(u"PRAGMA writable_schema = ON"_s);
        const auto pass = [&](const QString& condition, bool& isComplete) {
            return collect(database.prepare(ClipTable::selectStatement + condition), blobFolder,
                           rows, isComplete);
        };
        // Forwards, and past each damaged stretch with steps that double; then backwards, for what
        // the last step may have jumped over.
        bool isComplete = false;
        qint64 reached = pass(u"ORDER BY rowid"_s, isComplete).value_or(0);
        constexpr qint64 farthest = qint64(1) << 32;
        for (qint64 step = 1; !isComplete && step < farthest; step *= 2) {
            const auto last =
                pass(u"WHERE rowid > %1 ORDER BY rowid"_s.arg(reached + step), isComplete);
            if (last) {
                reached = *last;
                step = 1;
            }
        }
        if (const auto last = pass(u"ORDER BY rowid DESC"_s, isComplete); last && !isComplete)
            pass(u"WHERE rowid < %1 ORDER BY rowid DESC"_s.arg(*last), isComplete);
    }
    std::vector<ClipItem::Fields> fields;
    for (auto& [rowID, row] : rows)
        fields.push_back(std::move(row));
    return fields;
}

} // namespace quillet::ClipRescue
