#include "migration/private/PdChanges.h"

namespace DataAccess::Manager::PdSteps {

void Pd_03(SchemaChange& schema)
{
    // Misspelt from the first, and kept so that a search of old and new logs finds it.
    PdChanges::createTables(schema, "allready exists!");
}

} // namespace DataAccess::Manager::PdSteps
