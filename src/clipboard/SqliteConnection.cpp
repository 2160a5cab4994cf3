#include "clipboard/SqliteConnection.h"

#include <QUuid>

namespace quillet {

using namespace Qt::StringLiterals;

SqliteConnection::SqliteConnection(const QString& path, Access access)
    : m_name(QUuid::createUuid().toString()) {
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_name);
    database.setDatabaseName(path);
    if (access == Access::readOnly)
        database.setConnectOptions(u"QSQLITE_OPEN_READONLY"_s);
    if (!database.open())
        m_error = database.lastError();
}

SqliteConnection::~SqliteConnection() {
    QSqlDatabase::removeDatabase(m_name);
}

QSqlQuery SqliteConnection::prepare(const QString& statement) const {
    QSqlQuery query(QSqlDatabase::database(m_name, false));
    query.setForwardOnly(true);
    query.prepare(statement);
    return query;
}

bool SqliteConnection::run(const QString& statement) {
    QSqlQuery query(QSqlDatabase::database(m_name, false));
    if (query.exec(statement))
        return true;
    m_error = query.lastError();
    return false;
}

std::optional<QVariant> SqliteConnection::value(const QString& statement) {
    QSqlQuery query(QSqlDatabase::database(m_name, false));
    if (query.exec(statement) && query.next())
        return query.value(0);
    m_error = query.lastError();
    return std::nullopt;
}

} // namespace quillet
