#pragma once

#include "database/DataAccessExport.h"

#include <QString>

namespace DataAccess::Database {

/**
 * The absolute path of the database file called @p name. Left relative, SQLite would take "file:…" for an address with
 * options, and Qt ":…" for a resource. The two names to which SQLite gives a meaning of their own, ":memory:" and the
 * empty one, stay.
 */
DATAACCESS_EXPORT QString filePath(const QString& name);
/// The name under which a file is written until it is whole.
DATAACCESS_EXPORT QString unfinishedName(const QString& path);
/**
 * Makes the empty file @p path, which must not exist, with the owner and the rights of @p original, or for fewer users
 * where that is not possible; without an original, with the rights that the process gives its files. Throws
 * ExecutionException.
 */
DATAACCESS_EXPORT void createFileLike(const QString& path, const QString& original);
/// Gives the whole file @p temporaryPath the name @p path, in place of any file of that name, so that the content and
/// the name survive a power failure. Throws ExecutionException, and keeps what was under the name then.
DATAACCESS_EXPORT void publishFile(const QString& temporaryPath, const QString& path);

} // namespace DataAccess::Database
