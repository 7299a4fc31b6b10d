#pragma once

#include "entities/cables/Point.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Point>;

/// The points of routes and stations; table `ce_point`.
class DATAACCESS_EXPORT PointRepository : public EntityRepository<Cables::Entities::Point>
{
    Q_OBJECT

public:
    PointRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PointRepository() override;

    /// The points of the route @p id. The caller owns the task.
    Task<Entities>* GetByRouteIdAsync(QUuid id);
    /// The same, waiting for the result.
    Entities GetByRouteId(QUuid id);
};

} // namespace DataAccess::Repositories
