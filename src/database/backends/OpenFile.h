#pragma once

#include <QSqlError>
#include <QString>

namespace DataAccess::Database {

/**
 * The database file of one connection, from before it is opened until after it is closed.
 *
 * Nobody may look into a file that a connection of this process has open: on POSIX systems, to close a file takes away
 * all locks that the process has on it.
 */
class OpenFile
{
public:
    OpenFile() = default;
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// Why @p path cannot be opened as a database; otherwise not valid, and the file counts as open until leave().
    /// Calls @p contentError for a file that is there, unless it is open.
    QSqlError enter(const QString& path, QSqlError (*contentError)(const QString& path));
    /// Counts @p path, which need not exist, as open until leave(), without a look at it.
    void hold(const QString& path);
    /// To be called once the connection is closed. Changes nothing without a file.
    void leave();

    /// The error of what the database would not open either: no different from a connection that a server refuses.
    static QSqlError refused(const char* text);
    /// The error of what the database would open. Trying again does not help.
    static QSqlError unusable(const char* text);

private:
    QString m_key;
};

} // namespace DataAccess::Database
