#include "repositories/cables/PointRepository.h"

#include "database/backends/Backend.h"
#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

namespace DataAccess::Repositories {

using Cables::Entities::Point;

namespace {

struct PointTable : EntityTable
{
    using Entity = Point;
    static constexpr char getAll[] = "SELECT id, indexnumber, latitude, longitude, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] =
        "SELECT  id, indexnumber, latitude, longitude, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, indexnumber, latitude, longitude, snap, deleted, timestamp) VALUES (:id, :indexnumber, :latitude, :longitude, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        "UPDATE %1 SET \"indexnumber\" = :indexnumber, \"latitude\" = :latitude, \"longitude\" = :longitude, \"deleted\" = :deleted, \"snap\" = :snap, \"timestamp\" = :timestamp WHERE id = :id";
    static constexpr std::tuple columns = {column<&Point::Index>("indexnumber"), column<&Point::latitude>("latitude"),
                                           column<&Point::longitude>("longitude")};
};

} // namespace

PointRepository::PointRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_point"), strategy, manager,
                       std::make_shared<TableMapping<PointTable>>(), parent)
{}

PointRepository::~PointRepository() = default;

Database::Task<PointRepository::Entities>* PointRepository::GetByRouteIdAsync(QUuid id)
{
    const auto statement = [table = table(), id](Interfaces::IDatabase& db) {
        const QString text =
            QStringLiteral("SELECT * FROM %1 where ") +
            Database::Backend::of(db).position(QStringLiteral("id"),
                                               QStringLiteral("(SELECT points FROM ce_route Where id = '%2')")) +
            QStringLiteral(" != 0");
        return EntityRows::withId(text, table, id.toString());
    };
    // All columns come in the order of the table, where the time stamp stands last.
    return getRows(statement, {6, 5, 4}, Q_FUNC_INFO);
}

PointRepository::Entities PointRepository::GetByRouteId(QUuid id)
{
    return wait(GetByRouteIdAsync(id));
}

PointRepositoryCached::PointRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Point>>& repository)
    : RepositoryCache(repository)
{}

PointRepositoryCached::~PointRepositoryCached() = default;

PointRepositoryCached::Entities PointRepositoryCached::GetByRouteId(QUuid id)
{
    return ask<PointRepository>([&id](PointRepository& points) { return points.GetByRouteId(id); }, Q_FUNC_INFO);
}

template class EntityRepository<Cables::Entities::Point>;

} // namespace DataAccess::Repositories
