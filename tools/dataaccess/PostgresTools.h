#pragma once

#include "transfer/private/DirectDatabase.h"

#include <QStringList>

#include <functional>

class OpenedDatabase;

/// PostgreSQL's own programs for backups.
namespace PostgresTools {

/**
 * Runs "pg_dump" or "pg_restore" and waits for it. @p progress is asked now and then; false ends the program.
 * @p password reaches it through its environment. Throws ToolError with what it said, and Cancelled.
 */
void run(const QString& program, const QStringList& arguments, const QString& password,
         const std::function<bool()>& progress);

/// Writes the database into the file @p path in the custom format, and reads that file to its end.
void dumpTo(const QString& path, const DataAccess::Transfer::ConnectionSettings& settings,
            const std::function<bool(qint64, qint64)>& progress);
/// Replaces what the database holds by what the file @p path holds, in one transaction. Locks of others are waited for
/// ten seconds.
void restoreFrom(const QString& path, OpenedDatabase& target, const std::function<bool(qint64, qint64)>& progress);

} // namespace PostgresTools
