#pragma once

#include "database/DataAccessExport.h"

#include <QLoggingCategory>

namespace DataAccess {

Q_DECLARE_LOGGING_CATEGORY(lcDatabaseConfig)  // "qor.database.config"
Q_DECLARE_LOGGING_CATEGORY(lcMigrationEditor) // "qor.migration.editor"
Q_DECLARE_LOGGING_CATEGORY(lcMigrationPd)     // "qor.migration.pd"
Q_DECLARE_LOGGING_CATEGORY(lcMigrationLog)    // "qor.migrationLog"
Q_DECLARE_LOGGING_CATEGORY(lcContext)         // "qor.context"
Q_DECLARE_LOGGING_CATEGORY(lcFacade)          // "qor.facade"

/// "qor.database". Exported, as the repositories' templates log in it, and may be inlined into an application.
DATAACCESS_EXPORT const QLoggingCategory& lcDatabase();

} // namespace DataAccess
