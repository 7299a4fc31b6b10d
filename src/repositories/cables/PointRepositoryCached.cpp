#include "repositories/cables/PointRepositoryCached.h"

#include "repositories/cables/PointRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Point;

PointRepositoryCached::PointRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Point>>& repository)
    : RepositoryCache(repository)
{}

PointRepositoryCached::~PointRepositoryCached() = default;

PointRepositoryCached::Entities PointRepositoryCached::GetByRouteId(QUuid id)
{
    return ask<PointRepository>([&id](PointRepository& points) { return points.GetByRouteId(id); }, Q_FUNC_INFO);
}

} // namespace DataAccess::Repositories
