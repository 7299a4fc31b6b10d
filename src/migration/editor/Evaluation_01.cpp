#include "migration/SchemaChange.h"

namespace DataAccess::Manager::EditorSteps {

void Evaluation_01(SchemaChange& schema)
{
    schema.createTables();
}

} // namespace DataAccess::Manager::EditorSteps
