#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_02()
{
    return runStep(Q_FUNC_INFO, [](MigrationStep& step) {
        const QStringList existing = step.tables();
        for (const TableDefinition& table : {PdTables::reportMapping02(), PdTables::filter02(), PdTables::iec02()}) {
            if (!existing.contains(table.name))
                step.create(table);
        }
    });
}

} // namespace DataAccess::Manager
