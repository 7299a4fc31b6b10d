#include "migration/SchemaChange.h"

namespace DataAccess::Manager::EditorSteps {

void Cables_03(SchemaChange& schema)
{
    schema.rebuild(QStringLiteral("ce_segment"),
                   QStringLiteral("INSERT INTO ce_segment_tmp SELECT id, name, indexnumber, length, phase, point, "
                                  "detail, snap, deleted, timestamp FROM ce_segment"),
                   QStringLiteral("INSERT INTO ce_segment SELECT id, name, indexnumber, length, phase, point, "
                                  "detail, null, snap, deleted, timestamp FROM ce_segment_tmp"));
}

} // namespace DataAccess::Manager::EditorSteps
