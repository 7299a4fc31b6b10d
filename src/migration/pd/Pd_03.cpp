#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_03()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        createUnlessPresent(step, PdTables::evaluation03(), "allready exists!");
    });
}

} // namespace DataAccess::Manager
