#include "repositories/cables/InsulationRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Insulation;

namespace {

class InsulationMapping final : public EntityMapping<Insulation>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, name, velocity, timestamp, deleted, snap FROM %1"),
            QStringLiteral("SELECT  id, name, velocity, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, name, velocity, snap, deleted, timestamp) VALUES (:id, :name, :velocity, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE %1 SET "name" = :name, "velocity" = :velocity, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {3, 4, 5}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Insulation>& entity) const override
    {
        entity->SetName(row.toString(1));
        entity->SetVelocity(row.toDouble(2));
    }

    void bind(Interfaces::IValueConverter& values, const Insulation& entity) const override
    {
        values.bindValue(QStringLiteral(":name"), entity.Name());
        values.bindValue(QStringLiteral(":velocity"), entity.Velocity());
    }
};

} // namespace

InsulationRepository::InsulationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_insulation"), strategy, manager,
                       std::make_shared<InsulationMapping>(), parent)
{}

InsulationRepository::~InsulationRepository() = default;

template class EntityRepository<Cables::Entities::Insulation>;

} // namespace DataAccess::Repositories
