#include "repositories/cables/OwnerRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Owner;

namespace {

class OwnerMapping final : public EntityMapping<Owner>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, name, timestamp, deleted, snap FROM ce_owner"),
            QStringLiteral("SELECT id, name, timestamp, deleted, snap FROM ce_owner WHERE id = '%1'"),
            QStringLiteral(
                "INSERT INTO ce_owner(id, name, snap, deleted, timestamp) VALUES (:id, :name, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE ce_owner SET "name" = :name, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {2, 3, 4}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Owner>& entity) const override
    {
        entity->SetName(row.toString(1));
    }

    void bind(Interfaces::IValueConverter& values, const Owner& entity) const override
    {
        values.bindValue(QStringLiteral(":name"), entity.Name());
    }
};

} // namespace

OwnerRepository::OwnerRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_owner"), strategy, manager, std::make_shared<OwnerMapping>(), parent)
{}

OwnerRepository::~OwnerRepository() = default;

template class EntityRepository<Cables::Entities::Owner>;

} // namespace DataAccess::Repositories
