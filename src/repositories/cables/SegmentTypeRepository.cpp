#include "repositories/cables/SegmentTypeRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::SegmentType;

namespace {

class SegmentTypeMapping final : public EntityMapping<SegmentType>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, name, isjoint, timestamp, deleted, snap FROM ce_segmenttype"),
            QStringLiteral("SELECT id, name, isjoint, timestamp, deleted, snap FROM ce_segmenttype WHERE id = '%1'"),
            QStringLiteral(
                "INSERT INTO ce_segmenttype(id, name, isjoint, snap, deleted, timestamp) VALUES (:id, :name, :isjoint, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE ce_segmenttype SET "name" = :name, "isjoint" = :isjoint, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {3, 4, 5}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<SegmentType>& entity) const override
    {
        entity->SetName(row.toString(1));
        entity->SetIsJoint(row.toBool(2));
    }

    void bind(Interfaces::IValueConverter& values, const SegmentType& entity) const override
    {
        values.bindValue(QStringLiteral(":name"), entity.Name());
        values.bindValue(QStringLiteral(":isjoint"), entity.IsJoint());
    }
};

} // namespace

SegmentTypeRepository::SegmentTypeRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                             QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_segmenttype"), strategy, manager,
                       std::make_shared<SegmentTypeMapping>(), parent)
{}

SegmentTypeRepository::~SegmentTypeRepository() = default;

template class EntityRepository<Cables::Entities::SegmentType>;

} // namespace DataAccess::Repositories
