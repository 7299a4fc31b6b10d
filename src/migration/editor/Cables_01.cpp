#include "migration/SchemaChange.h"

namespace DataAccess::Manager::EditorSteps {

void Cables_01(SchemaChange& schema)
{
    schema.createVersionTables();
    for (const QString& table : schema.tables()) {
        if (schema.step().discards.contains(table, Qt::CaseInsensitive))
            schema.discard(table);
    }
    schema.createTables();
}

} // namespace DataAccess::Manager::EditorSteps
