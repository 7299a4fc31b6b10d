#pragma once

#include "database/DataAccessExport.h"

#include <QString>

namespace DataAccess::Interfaces {
class IDatabase;
}
namespace QOR::Entities::Interfaces {
class IEntity;
}

namespace DataAccess::Database {

/**
 * The statements that are the same for every entity table, for use inside jobs. They never throw: a failed statement is
 * logged (category "qor.database") and answered with 0 or false.
 */
class DATAACCESS_EXPORT GenericDml
{
public:
    /// Number of rows of @p table.
    static unsigned int count(Interfaces::IDatabase& db, const QString& table);
    /// Marks the row of @p entity deleted, now. False also for no entity and for one without an id.
    static bool deleteFromTable(Interfaces::IDatabase& db, QOR::Entities::Interfaces::IEntity* entity,
                                const QString& table);
    /// Deletes the row of @p entity. False also for no entity and for one without an id.
    static bool removeFromTable(Interfaces::IDatabase& db, QOR::Entities::Interfaces::IEntity* entity,
                                const QString& table);
};

} // namespace DataAccess::Database
