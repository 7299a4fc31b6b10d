#include "repositories/cables/SegmentDetailRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::SegmentDetail;

namespace {

class SegmentDetailMapping final : public EntityMapping<SegmentDetail>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, name, velocity, insulation, type, favorite, timestamp, deleted, snap FROM %1"),
            QStringLiteral(
                "SELECT  id, name,  velocity, insulation, type, favorite, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, name, velocity, insulation, type, favorite, snap, deleted, timestamp) VALUES (:id, :name, :velocity, :insulation, :type, :favorite, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE %1 SET "name" = :name, "velocity" = :velocity, "insulation" = :insulation, "type" = :type, "favorite" = :favorite, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {6, 7, 8}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<SegmentDetail>& entity) const override
    {
        entity->SetName(row.toString(1));
        entity->SetVelocity(row.toDouble(2));
        entity->SetInsulationId(row.toUuid(3));
        entity->SetTypeId(row.toUuid(4));
        entity->SetIsFavorite(row.toBool(5));
    }

    void bind(Interfaces::IValueConverter& values, const SegmentDetail& entity) const override
    {
        values.bindValue(QStringLiteral(":name"), entity.Name());
        values.bindValue(QStringLiteral(":velocity"), entity.Velocity());
        values.bindValue(QStringLiteral(":insulation"), entity.InsulationId());
        values.bindValue(QStringLiteral(":type"), entity.TypeId());
        values.bindValue(QStringLiteral(":favorite"), entity.IsFavorite());
    }
};

} // namespace

SegmentDetailRepository::SegmentDetailRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                                 QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_segment_detail"), strategy, manager,
                       std::make_shared<SegmentDetailMapping>(), parent)
{}

SegmentDetailRepository::~SegmentDetailRepository() = default;

template class EntityRepository<Cables::Entities::SegmentDetail>;

} // namespace DataAccess::Repositories
