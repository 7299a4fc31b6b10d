#pragma once

#include "database/DataAccessExport.h"

#include <QString>

namespace DataAccess::Database {

/// The name under which a file is written until it is whole.
DATAACCESS_EXPORT QString unfinishedName(const QString& path);
/**
 * Makes the empty file @p path, which must be free, for the same users as @p original: the owner and the rights of
 * that, or at least not more users. Without an original, what the process gives its files. Throws ExecutionException.
 */
DATAACCESS_EXPORT void createFileLike(const QString& path, const QString& original);
/// Gives the whole file @p temporaryPath the name @p path, in place of any file of that name, so that the content and
/// the name survive a power failure. Throws ExecutionException, and keeps what was under the name then.
DATAACCESS_EXPORT void publishFile(const QString& temporaryPath, const QString& path);

} // namespace DataAccess::Database
