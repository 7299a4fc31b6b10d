#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_06()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        createUnlessPresent(step, PdTables::taskInfo06(), "already exists!");
    });
}

} // namespace DataAccess::Manager
