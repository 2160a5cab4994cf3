#pragma once

#include "clipboard/ClipItem.h"

#include <QSqlQuery>

namespace quillet {

/// How items lie in the database and in the folder beside it. An image, and a text that is too
/// long for a row, has a file of its own, named after the item; its row knows the size.
namespace ClipTable {

inline constexpr int schemaVersion = 1;
inline constexpr qsizetype longestTextInRow = 32 * 1024; // UTF-8 bytes

extern const QString createStatement;
extern const QString insertStatement;
extern const QString updateStatement;
extern const QString removeStatement;
extern const QString selectStatement; ///< all columns and the row id, without condition or order

/// Sets an insert statement's values.
void bindAll(QSqlQuery& query, const ClipItem::Fields& fields);

/// Reads a row of the select statement; absent when it has no valid id.
std::optional<ClipItem::Fields> fieldsInRow(const QSqlQuery& query, const QString& blobFolder);

qint64 rowIDInRow(const QSqlQuery& query);

/// How an id is written in rows and file names.
QString idText(const QUuid& id);

QString imagePath(const QString& blobFolder, const QUuid& id);
QString longTextPath(const QString& blobFolder, const QUuid& id);

} // namespace ClipTable

} // namespace quillet
