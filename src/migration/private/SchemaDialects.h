#pragma once

#include "migration/private/SchemaDialect.h"

namespace DataAccess::Manager {

const SchemaDialect& postgresDialect();
const SchemaDialect& sqliteDialect();
/// That of the copies of legacy files.
const SchemaDialect& legacyDialect();

} // namespace DataAccess::Manager
