#pragma once

#include "entities/cables/Point.h"
#include "repositories/EntityRepository.h"
#include "repositories/RepositoryCache.h"

namespace DataAccess::Repositories {

/// The points of routes and stations; table `ce_point`.
class DATAACCESS_EXPORT PointRepository : public EntityRepository<Cables::Entities::Point>
{
    Q_OBJECT

public:
    /// Makes a repository on @p worker; see Repository.
    PointRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PointRepository() override;

    /// The points of the route @p id. The caller owns the task.
    Task<Entities>* GetByRouteIdAsync(QUuid id);
    /// The same, waiting for the result.
    Entities GetByRouteId(QUuid id);
};

/// The cache over a PointRepository.
class DATAACCESS_EXPORT PointRepositoryCached : public RepositoryCache<Cables::Entities::Point>
{
public:
    /// Shares @p repository, which may be null.
    explicit PointRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Cables::Entities::Point>>& repository);
    ~PointRepositoryCached() override;

    /// The points of the route @p id, always from the table, since a point does not know its route. They are cached.
    Entities GetByRouteId(QUuid id);
};

} // namespace DataAccess::Repositories
