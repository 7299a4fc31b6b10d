#include "repositories/PdDatabase.h"

#include "migration/pd/PdMigrationManager.h"

namespace TestSupport {

PdDatabase::PdDatabase(DataAccess::Enumerations::DatabaseType type)
    : EditorDatabase(type)
{
    DataAccess::Manager::PdMigrationManager migration;
    migration.setDbWorker(worker().get());
    if (!migration.Migrate())
        qFatal("The partial-discharge schema of the test's database cannot be made");
}

} // namespace TestSupport
