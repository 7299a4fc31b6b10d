#include "migration/private/PdChanges.h"

namespace DataAccess::Manager::PdSteps {

void Pd_08(SchemaChange& schema)
{
    PdChanges::createTables(schema);
}

} // namespace DataAccess::Manager::PdSteps
