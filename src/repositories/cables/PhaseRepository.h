#pragma once

#include "entities/cables/Phase.h"
#include "repositories/EntityRepository.h"
#include "repositories/RepositoryCache.h"

namespace DataAccess::Repositories {

/// The phases of cables; table `ce_phase`.
class DATAACCESS_EXPORT PhaseRepository : public EntityRepository<Cables::Entities::Phase>
{
    Q_OBJECT

public:
    /// Makes a repository on @p worker; see Repository.
    PhaseRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PhaseRepository() override;

    /// The phases of the cable @p id. The caller owns the task.
    Task<Entities>* GetByCableIdAsync(QUuid id);
    /// The same, waiting for the result.
    Entities GetByCableId(QUuid id);
};

/// The cache over a PhaseRepository.
class DATAACCESS_EXPORT PhaseRepositoryCached : public RepositoryCache<Cables::Entities::Phase>
{
public:
    /// Shares @p repository, which may be null.
    explicit PhaseRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Cables::Entities::Phase>>& repository);
    ~PhaseRepositoryCached() override;

    /// The cached phases of the cable @p id, which need not be all of them; only if there is none the table is asked.
    Entities GetByCableId(QUuid id);
};

} // namespace DataAccess::Repositories
