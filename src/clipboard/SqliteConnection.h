#pragma once

#include <memory>
#include <optional>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace quillet {

/// One connection to an SQLite file, closed when destroyed; its queries must be gone by then. To
/// be used on the thread that made it.
class SqliteConnection {
public:
    enum class Access { readWrite, readOnly };

    SqliteConnection(const QString& path, Access access);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    /// A query on this connection, with the statement prepared. It shows an error when it cannot
    /// be.
    QSqlQuery prepare(const QString& statement) const;

    /// Runs a statement. False when it failed; error() says why.
    bool run(const QString& statement);

    /// The first column of a statement's first row; absent when it failed or yields no row.
    std::optional<QVariant> value(const QString& statement);

    /// Runs `work` in a transaction: all of it takes effect, or, when it returns false, none.
    template<typename Work>
    bool transaction(Work work) {
        if (!run(QStringLiteral("BEGIN IMMEDIATE")))
            return false;
        if (work() && run(QStringLiteral("COMMIT")))
            return true;
        const QSqlError cause = m_error;
        run(QStringLiteral("ROLLBACK"));
        m_error = cause;
        return false;
    }

    /// What went wrong last.
    const QSqlError& error() const { return m_error; }
    void setError(const QSqlError& error) { m_error = error; }

private:
    QString m_name;
    QSqlError m_error;
};

} // namespace quillet
