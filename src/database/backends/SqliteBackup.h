#pragma once

#include "database/DataAccessExport.h"

#include <QString>

#include <functional>

namespace DataAccess::Database {

/// Asked between two parts with the number of pages that are copied and of all; false ends the copying.
using BackupProgress = std::function<bool(qint64 done, qint64 total)>;

/**
 * Copies all of the SQLite database @p from into the database @p to, which is made if it is not there, while other
 * programs read and write. What @p to held is replaced, in one transaction: its readers see all of the old or all of
 * the new. @p isUnseen says that nobody reads @p to and that half a file does no harm, which saves the transaction.
 *
 * Writers of @p from make the copying begin again; from the third time on they have to wait. False when @p progress has
 * ended it: then a @p to that can be seen is as it was. Throws ExecutionException.
 */
DATAACCESS_EXPORT bool backupSqlite(const QString& from, const QString& to, bool isUnseen,
                                    const BackupProgress& progress = {});

/// What SQLite finds wrong with the file @p path, a line a fault; empty when it is sound. @p isDeep: indexes against
/// rows, too. Throws ExecutionException.
DATAACCESS_EXPORT QString sqliteFaults(const QString& path, bool isDeep);

/// Number of rows of @p table in the file @p path. Throws ExecutionException.
DATAACCESS_EXPORT qint64 sqliteRowCount(const QString& path, const QString& table);

} // namespace DataAccess::Database
