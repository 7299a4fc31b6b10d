#include "repositories/cables/TerminationRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Termination;

namespace {

class TerminationMapping final : public EntityMapping<Termination>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, name, timestamp, deleted, snap FROM %1"),
            QStringLiteral("SELECT id, name, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, name, snap, deleted, timestamp) VALUES (:id, :name, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE %1 SET "name" = :name, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {2, 3, 4}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Termination>& entity) const override
    {
        entity->SetName(row.toString(1));
    }

    void bind(Interfaces::IValueConverter& values, const Termination& entity) const override
    {
        values.bindValue(QStringLiteral(":name"), entity.Name());
    }
};

} // namespace

TerminationRepository::TerminationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                             QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_termination"), strategy, manager,
                       std::make_shared<TerminationMapping>(), parent)
{}

TerminationRepository::~TerminationRepository() = default;

template class EntityRepository<Cables::Entities::Termination>;

} // namespace DataAccess::Repositories
