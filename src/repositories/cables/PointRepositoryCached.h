#pragma once

#include "entities/cables/Point.h"
#include "repositories/RepositoryCache.h"

namespace DataAccess::Repositories {

/// The cache over a PointRepository.
class DATAACCESS_EXPORT PointRepositoryCached : public RepositoryCache<Cables::Entities::Point>
{
public:
    explicit PointRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Cables::Entities::Point>>& repository);
    ~PointRepositoryCached() override;

    /// The points of the route @p id, always from the table, since a point does not know its route. They are cached.
    Entities GetByRouteId(QUuid id);
};

} // namespace DataAccess::Repositories
