#include "migration/private/PdChanges.h"

namespace DataAccess::Manager::PdSteps {

void Pd_03(SchemaChange& schema)
{
    // Misspelt from the first: who searches a log finds it.
    PdChanges::createTables(schema, "allready exists!");
}

} // namespace DataAccess::Manager::PdSteps
