#pragma once

#include "database/DataAccessExport.h"

#include <QString>

namespace DataAccess::Database {

/**
 * Copies the legacy file @p from to @p to, as it is at one moment, together with what belongs to it: its journal, and
 * its working copy if there is one. Nothing beside @p from is made or changed. What is there under the new names is
 * replaced. Throws std::runtime_error.
 */
DATAACCESS_EXPORT void copyLegacyFile(const QString& from, const QString& to);

} // namespace DataAccess::Database
