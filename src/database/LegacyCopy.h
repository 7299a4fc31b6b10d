#pragma once

#include "database/DataAccessExport.h"

#include <QString>

namespace DataAccess::Database {

/// The file that changes of the legacy file @p path are kept in.
DATAACCESS_EXPORT QString workingCopyOf(const QString& path);

/**
 * Copies the legacy file @p from to @p to, as it is at one moment, together with what belongs to it: its journal, and
 * its working copy if there is one. Nothing beside @p from is made or changed. What is there under the new names is
 * replaced once everything is written, the working copy last: until then what applications open is the old one, or,
 * when another legacy file takes the place of the old, is refused with a reason. Throws std::runtime_error.
 */
DATAACCESS_EXPORT void copyLegacyFile(const QString& from, const QString& to);

} // namespace DataAccess::Database
