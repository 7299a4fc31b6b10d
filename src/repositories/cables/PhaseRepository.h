#pragma once

#include "entities/cables/Phase.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Phase>;

/// The phases of cables; table `ce_phase`.
class DATAACCESS_EXPORT PhaseRepository : public EntityRepository<Cables::Entities::Phase>
{
    Q_OBJECT

public:
    PhaseRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PhaseRepository() override;

    /// The phases of the cable @p id. The caller owns the task.
    Task<Entities>* GetByCableIdAsync(QUuid id);
    /// The same, waiting for the result.
    Entities GetByCableId(QUuid id);
};

} // namespace DataAccess::Repositories
