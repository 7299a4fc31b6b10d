#include "database/LoggingCategories.h"

namespace DataAccess {

Q_LOGGING_CATEGORY(lcDatabase, "qor.database")
Q_LOGGING_CATEGORY(lcDatabaseConfig, "qor.database.config")
Q_LOGGING_CATEGORY(lcMigrationEditor, "qor.migration.editor")
Q_LOGGING_CATEGORY(lcMigrationPd, "qor.migration.pd")
Q_LOGGING_CATEGORY(lcMigrationLog, "qor.migrationLog")
Q_LOGGING_CATEGORY(lcContext, "qor.context")
Q_LOGGING_CATEGORY(lcFacade, "qor.facade")

} // namespace DataAccess
