#include "migration/MigrationStep.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/editor/EditorTables.h"

namespace DataAccess::Manager {

bool EditorMigrationManager::Cables_03()
{
    return runStep(Q_FUNC_INFO, [](MigrationStep& step) {
        step.rebuild(EditorTables::segment02(), EditorTables::segment03(), QStringLiteral("ce_segment_tmp"),
                     QStringLiteral("INSERT INTO ce_segment_tmp SELECT id, name, indexnumber, length, phase, point, "
                                    "detail, snap, deleted, timestamp FROM ce_segment"),
                     QStringLiteral("INSERT INTO ce_segment SELECT id, name, indexnumber, length, phase, point, "
                                    "detail, null, snap, deleted, timestamp FROM ce_segment_tmp"));
    });
}

} // namespace DataAccess::Manager
