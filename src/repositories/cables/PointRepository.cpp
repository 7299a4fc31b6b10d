#include "repositories/cables/PointRepository.h"

#include "database/backends/Backend.h"
namespace DataAccess::Repositories {

using Cables::Entities::Point;

namespace {

class PointMapping final : public EntityMapping<Point>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, indexnumber, latitude, longitude, timestamp, deleted, snap FROM %1"),
            QStringLiteral(
                "SELECT  id, indexnumber, latitude, longitude, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, indexnumber, latitude, longitude, snap, deleted, timestamp) VALUES (:id, :indexnumber, :latitude, :longitude, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                "UPDATE %1 SET \"indexnumber\" = :indexnumber, \"latitude\" = :latitude, \"longitude\" = :longitude, \"deleted\" = :deleted, \"snap\" = :snap, \"timestamp\" = :timestamp WHERE id = :id"),
            {4, 5, 6}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Point>& entity) const override
    {
        entity->SetIndex(row.toUint(1));
        entity->setLatitude(row.toDouble(2));
        entity->setLongitude(row.toDouble(3));
    }

    void bind(Interfaces::IValueConverter& values, const Point& entity) const override
    {
        values.bindValue(QStringLiteral(":indexnumber"), entity.Index());
        values.bindValue(QStringLiteral(":latitude"), entity.latitude());
        values.bindValue(QStringLiteral(":longitude"), entity.longitude());
    }
};

} // namespace

PointRepository::PointRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_point"), strategy, manager, std::make_shared<PointMapping>(), parent)
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

template class EntityRepository<Cables::Entities::Point>;

} // namespace DataAccess::Repositories
