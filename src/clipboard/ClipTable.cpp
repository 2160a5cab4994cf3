#include "clipboard/ClipTable.h"
#include "clipboard/Utf8.h"

#include <QVariant>

namespace quillet::ClipTable {

using namespace Qt::StringLiterals;

namespace {

// In the order of the table. Texts are blobs: SQLite would end them at a NUL here and there.
enum Column {
    idColumn,
    kindRawColumn,
    textColumn,
    longTextBytesColumn,
    imageBytesColumn,
    filePathsColumn,
    sourceBundleIDColumn,
    sourceAppNameColumn,
    createdAtColumn,
    isPinnedColumn,
    contentHashColumn,
    rowIDColumn
};

// No path contains a NUL.
constexpr QChar pathSeparator = QChar::Null;

template<typename T>
QVariant nullable(const std::optional<T>& value) {
    return value ? QVariant::fromValue(*value) : QVariant();
}

QVariant nullableSize(const std::optional<ClipPayload>& payload) {
    return payload ? QVariant(payload->size()) : QVariant();
}

std::optional<QString> stringInRow(const QSqlQuery& query, Column column) {
    return query.isNull(column) ? std::nullopt : std::optional(query.value(column).toString());
}

std::optional<ClipPayload> payloadInRow(const QSqlQuery& query, Column column,
                                        const QString& path) {
    if (query.isNull(column))
        return std::nullopt;
    return ClipPayload(path, query.value(column).toLongLong());
}

} // namespace

const QString createStatement = u"CREATE TABLE ClipItem ("
                                "id TEXT NOT NULL UNIQUE, kindRaw TEXT NOT NULL, text BLOB, "
                                "longTextBytes INTEGER, imageBytes INTEGER, filePaths BLOB, "
                                "sourceBundleID TEXT, sourceAppName TEXT, "
                                "createdAt INTEGER NOT NULL, isPinned INTEGER NOT NULL, "
                                "contentHash TEXT NOT NULL)"_s;

const QString insertStatement = u"INSERT INTO ClipItem VALUES (?,?,?,?,?,?,?,?,?,?,?)"_s;

const QString updateStatement = u"UPDATE ClipItem SET createdAt = ?, isPinned = ? WHERE id = ?"_s;

const QString removeStatement = u"DELETE FROM ClipItem WHERE id = ?"_s;

const QString selectStatement =
    u"SELECT id, kindRaw, text, longTextBytes, imageBytes, filePaths, sourceBundleID, "
    "sourceAppName, createdAt, isPinned, contentHash, rowid FROM ClipItem NOT INDEXED "_s;

void bindAll(QSqlQuery& query, const ClipItem::Fields& fields) {
    query.bindValue(idColumn, idText(fields.id));
    query.bindValue(kindRawColumn, fields.kindRaw);
    query.bindValue(textColumn, fields.text ? QVariant(fields.text->toUtf8()) : QVariant());
    query.bindValue(longTextBytesColumn, nullableSize(fields.longText));
    query.bindValue(imageBytesColumn, nullableSize(fields.imageData));
    query.bindValue(filePathsColumn, fields.filePaths.join(pathSeparator).toUtf8());
    query.bindValue(sourceBundleIDColumn, nullable(fields.sourceBundleID));
    query.bindValue(sourceAppNameColumn, nullable(fields.sourceAppName));
    query.bindValue(createdAtColumn, fields.createdAt.toMSecsSinceEpoch());
    query.bindValue(isPinnedColumn, fields.isPinned);
    query.bindValue(contentHashColumn, fields.contentHash);
}

std::optional<ClipItem::Fields> fieldsInRow(const QSqlQuery& query, const QString& blobFolder) {
    ClipItem::Fields fields;
    fields.id = QUuid::fromString(query.value(idColumn).toString());
    if (fields.id.isNull())
        return std::nullopt;
    fields.kindRaw = query.value(kindRawColumn).toString();
    if (!query.isNull(textColumn))
        fields.text = decodeUtf8(query.value(textColumn).toByteArray());
    fields.longText = payloadInRow(query, longTextBytesColumn, longTextPath(blobFolder, fields.id));
    fields.imageData = payloadInRow(query, imageBytesColumn, imagePath(blobFolder, fields.id));
    fields.filePaths = decodeUtf8(query.value(filePathsColumn).toByteArray())
                           .split(pathSeparator, Qt::SkipEmptyParts);
    fields.sourceBundleID = stringInRow(query, sourceBundleIDColumn);
    fields.sourceAppName = stringInRow(query, sourceAppNameColumn);
    fields.createdAt = QDateTime::fromMSecsSinceEpoch(query.value(createdAtColumn).toLongLong());
    fields.isPinned = query.value(isPinnedColumn).toBool();
    fields.contentHash = query.value(contentHashColumn).toString();
    return fields;
}

qint64 rowIDInRow(const QSqlQuery& query) {
    return query.value(rowIDColumn).toLongLong();
}

QString idText(const QUuid& id) {
    return id.toString(QUuid::WithoutBraces);
}

QString imagePath(const QString& blobFolder, const QUuid& id) {
    return blobFolder + u'/' + idText(id) + u".png"_s;
}

QString longTextPath(const QString& blobFolder, const QUuid& id) {
    return blobFolder + u'/' + idText(id) + u".txt"_s;
}

} // namespace quillet::ClipTable
