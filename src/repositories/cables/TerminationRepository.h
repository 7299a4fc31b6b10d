#pragma once

#include "entities/cables/Termination.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Termination>;

/// The kinds of terminations of cables; table `ce_termination`.
class DATAACCESS_EXPORT TerminationRepository : public EntityRepository<Cables::Entities::Termination>
{
    Q_OBJECT

public:
    TerminationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                          const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                          QObject* parent = nullptr);
    ~TerminationRepository() override;
};

} // namespace DataAccess::Repositories
