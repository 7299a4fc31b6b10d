#pragma once

#include "migration/Backup.h"

#include <QString>

struct sqlite3;

namespace DataAccess::Manager {

/// A copy of the file of an SQLite database that is open, beside it. Nobody may write to the database meanwhile.
class FileCopy
{
public:
    /// @p database must be of the copy of SQLite that this library uses, and outlive the object.
    explicit FileCopy(sqlite3* database);

    /// The absolute path of the file; empty for a database in memory.
    const QString& original() const { return m_original; }
    /// The path of the file with @p addition in front of the extension.
    QString besideOriginal(const QString& addition) const;
    /**
     * Copies the file to @p path, which must be free, by way of @p part; checked against the rows in @p tables, and
     * safe on the disk. Throws ExecutionException; nothing is left then.
     */
    void make(const QString& part, const QString& path, const Backup::TableRows& tables) const;

private:
    QString m_original;
};

} // namespace DataAccess::Manager
