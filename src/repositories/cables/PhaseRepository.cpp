#include "repositories/cables/PhaseRepository.h"

#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

namespace DataAccess::Repositories {

using Cables::Entities::Phase;

namespace {

struct PhaseTable : EntityTable
{
    using Entity = Phase;
    static constexpr char getAll[] = "SELECT id, indexnumber, cable, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] =
        "SELECT  id, indexnumber, cable, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, indexnumber, cable, snap, deleted, timestamp) VALUES (:id, :indexnumber, :cable, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "indexnumber" = :indexnumber, "cable" = :cable, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&Phase::Index, LimitedIndexForm>("indexnumber"),
                                           column<&Phase::CableId>("cable")};
};

} // namespace

PhaseRepository::PhaseRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_phase"), strategy, manager,
                       std::make_shared<TableMapping<PhaseTable>>(), parent)
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

PhaseRepositoryCached::PhaseRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Phase>>& repository)
    : RepositoryCache(repository)
{}

PhaseRepositoryCached::~PhaseRepositoryCached() = default;

PhaseRepositoryCached::Entities PhaseRepositoryCached::GetByCableId(QUuid id)
{
    const auto matches = [&id](const Phase& phase) { return phase.CableId() == id; };
    const auto query = [&id](PhaseRepository& phases) { return phases.GetByCableId(id); };
    return searchOrAsk<PhaseRepository>(matches, query, Q_FUNC_INFO);
}

template class EntityRepository<Cables::Entities::Phase>;

} // namespace DataAccess::Repositories
