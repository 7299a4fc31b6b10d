#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_04()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        for (const TableDefinition& table :
             {PdTables::mappingEvent04(), PdTables::iecOverview04(), PdTables::summary04()})
            createUnlessPresent(step, table, "already exists!");
    });
}

} // namespace DataAccess::Manager
