#include "migration/MigrationStep.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/editor/EditorTables.h"

namespace DataAccess::Manager {

bool EditorMigrationManager::Cables_05()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        const TableDefinition before = EditorTables::cable02();
        const QString columns = before.columnList();
        step.rebuild(before, EditorTables::cable07(), QStringLiteral("ce_cable_tmp"),
                     QStringLiteral("INSERT INTO ce_cable_tmp SELECT %1 FROM ce_cable").arg(columns),
                     QStringLiteral("INSERT INTO ce_cable SELECT %1, NULL FROM ce_cable_tmp").arg(columns));
        createTable(step, EditorTables::cablebookMeasures07());
    });
}

} // namespace DataAccess::Manager
