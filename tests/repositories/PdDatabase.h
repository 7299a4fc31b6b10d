#pragma once

#include "repositories/EditorDatabase.h"

namespace TestSupport {

/// A database of one backend with the schemas of the cable network and of the partial-discharge data.
class PdDatabase : public EditorDatabase
{
public:
    explicit PdDatabase(DataAccess::Enumerations::DatabaseType type = currentBackend());
};

} // namespace TestSupport
