#include "repositories/cables/SwitchgearRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Switchgear;

namespace {

class SwitchgearMapping final : public EntityMapping<Switchgear>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, name, timestamp, deleted, snap FROM ce_switchgear"),
            QStringLiteral("SELECT id, name, timestamp, deleted, snap FROM ce_switchgear WHERE id = '%1'"),
            QStringLiteral(
                "INSERT INTO ce_switchgear(id, name, snap, deleted, timestamp) VALUES (:id, :name, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE ce_switchgear SET "name" = :name, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {2, 3, 4}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Switchgear>& entity) const override
    {
        entity->SetName(row.toString(1));
    }

    void bind(Interfaces::IValueConverter& values, const Switchgear& entity) const override
    {
        values.bindValue(QStringLiteral(":name"), entity.Name());
    }
};

} // namespace

SwitchgearRepository::SwitchgearRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_switchgear"), strategy, manager,
                       std::make_shared<SwitchgearMapping>(), parent)
{}

SwitchgearRepository::~SwitchgearRepository() = default;

template class EntityRepository<Cables::Entities::Switchgear>;

} // namespace DataAccess::Repositories
