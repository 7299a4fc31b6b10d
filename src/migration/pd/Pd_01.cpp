#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_01()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        createVersionTables(step);
        for (const TableDefinition& table :
             {PdTables::file01(), PdTables::task01(), PdTables::report01(), PdTables::mapping01()})
            createTable(step, table);
    });
}

} // namespace DataAccess::Manager
