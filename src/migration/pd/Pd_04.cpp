#include "migration/private/PdChanges.h"

namespace DataAccess::Manager::PdSteps {

void Pd_04(SchemaChange& schema)
{
    PdChanges::createTables(schema);
}

} // namespace DataAccess::Manager::PdSteps
