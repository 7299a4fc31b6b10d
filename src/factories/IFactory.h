#pragma once

#include "database/DataAccessExport.h"
#include "database/LoadingStrategies.h"

#include <memory>

namespace DataAccess::Database {
class DbWorker;
}

namespace DataAccess::Interfaces {

/// Builds the manager of one family of repositories for one database.
template <typename T>
class DATAACCESS_EXPORT IFactory
{
public:
    virtual ~IFactory() = default;

    /**
     * Makes a manager with new repositories on @p worker and empty caches; each call makes another. Nothing of the
     * database is touched. @p worker is not owned and may be null: the first use of a repository throws then.
     */
    virtual std::shared_ptr<T> create(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy) = 0;

protected:
    IFactory() = default;
    IFactory(const IFactory&) = default;
    IFactory& operator=(const IFactory&) = default;
};

} // namespace DataAccess::Interfaces
