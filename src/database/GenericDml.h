#pragma once

#include "database/DataAccessExport.h"

#include <QString>

#include <functional>

namespace DataAccess::Interfaces {
class IDatabase;
class IValueConverter;
} // namespace DataAccess::Interfaces
namespace QOR::Entities::Interfaces {
class IEntity;
}

namespace DataAccess::Database {

/**
 * The statements that are the same for every entity table, for use inside jobs. They never throw: what fails is logged
 * (category "qor.database"), reported to the FailureWatch, and answered with 0 or false. Changing a row that is not
 * there is a failure, too.
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

    /// Runs @p statement, which changes the row of @p entity in @p table, with the values that @p bind binds. False
    /// also for no entity and for one without an id. Logs on behalf of @p function.
    static bool changeRow(Interfaces::IDatabase& db, const QOR::Entities::Interfaces::IEntity* entity,
                          const QString& table, const QString& statement,
                          const std::function<void(Interfaces::IValueConverter&)>& bind, const char* function);
};

} // namespace DataAccess::Database
