#include "migration/MigrationStep.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/editor/EditorTables.h"

namespace DataAccess::Manager {

bool EditorMigrationManager::Evaluation_01()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) { createTable(step, EditorTables::evaluation05()); });
}

} // namespace DataAccess::Manager
