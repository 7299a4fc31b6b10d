#include "migration/MigrationStep.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/editor/EditorTables.h"

namespace DataAccess::Manager {

bool EditorMigrationManager::Cables_01()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        createVersionTables(step);
        for (const QString& table : step.tables()) {
            if (EditorTables::unversioned().contains(table, Qt::CaseInsensitive))
                step.discard(table);
        }
        for (const TableDefinition& table : EditorTables::all01())
            createTable(step, table);
    });
}

} // namespace DataAccess::Manager
