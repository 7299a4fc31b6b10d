#include "migration/SchemaChange.h"

namespace DataAccess::Manager::PdSteps {

void Pd_02(SchemaChange& schema)
{
    const QStringList existing = schema.tables();
    for (const TableDefinition& table : schema.step().layouts) {
        if (!existing.contains(table.name))
            schema.create(table);
    }
}

} // namespace DataAccess::Manager::PdSteps
