#include "migration/SchemaChange.h"

namespace DataAccess::Manager::PdSteps {

void Pd_01(SchemaChange& schema)
{
    schema.createVersionTables();
    schema.createTables();
}

} // namespace DataAccess::Manager::PdSteps
