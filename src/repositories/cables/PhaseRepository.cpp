#include "repositories/cables/PhaseRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Phase;

namespace {

class PhaseMapping final : public EntityMapping<Phase>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, indexnumber, cable, timestamp, deleted, snap FROM %1"),
            QStringLiteral("SELECT  id, indexnumber, cable, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, indexnumber, cable, snap, deleted, timestamp) VALUES (:id, :indexnumber, :cable, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE %1 SET "indexnumber" = :indexnumber, "cable" = :cable, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {3, 4, 5}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Phase>& entity) const override
    {
        entity->SetIndex(row.toUint(1));
        entity->SetCableId(row.toUuid(2));
    }

    void bind(Interfaces::IValueConverter& values, const Phase& entity) const override
    {
        bindIndex(values, QStringLiteral(":indexnumber"), entity.Index());
        values.bindValue(QStringLiteral(":cable"), entity.CableId());
    }
};

} // namespace

PhaseRepository::PhaseRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_phase"), strategy, manager, std::make_shared<PhaseMapping>(), parent)
{}

PhaseRepository::~PhaseRepository() = default;

Database::Task<PhaseRepository::Entities>* PhaseRepository::GetByCableIdAsync(QUuid id)
{
    return getRowsById(
        QStringLiteral("SELECT  id, indexnumber, cable, timestamp, deleted, snap FROM %1 WHERE cable = '%2'"), id,
        Q_FUNC_INFO);
}

PhaseRepository::Entities PhaseRepository::GetByCableId(QUuid id)
{
    return wait(GetByCableIdAsync(id));
}

template class EntityRepository<Cables::Entities::Phase>;

} // namespace DataAccess::Repositories
