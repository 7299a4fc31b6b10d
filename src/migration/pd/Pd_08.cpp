#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_08()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        createUnlessPresent(step, PdTables::lbDiagram08(), "already exists!");
    });
}

} // namespace DataAccess::Manager
