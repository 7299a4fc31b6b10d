#pragma once

#include <QSqlError>
#include <QString>

namespace DataAccess::Database {

/**
 * The file of one SQLite connection, from before it is opened until after it is closed.
 *
 * SQLite itself opens anything; enter() tells what is no database. It does not look into a file that a connection of
 * this process has open: on POSIX systems, to close a file takes away all locks that the process has on it.
 */
class SQLiteFile
{
public:
    SQLiteFile() = default;
    ~SQLiteFile();
    SQLiteFile(const SQLiteFile&) = delete;
    SQLiteFile& operator=(const SQLiteFile&) = delete;

    /// Why @p path cannot be opened as a database; otherwise not valid, and the file counts as open until leave().
    QSqlError enter(const QString& path);
    /// Counts @p path, which need not exist, as open until leave(), without a look at it.
    void hold(const QString& path);
    /// To be called once the connection is closed. Changes nothing without a file.
    void leave();

private:
    QString m_key;
};

} // namespace DataAccess::Database
