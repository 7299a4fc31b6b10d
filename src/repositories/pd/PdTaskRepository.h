#pragma once

#include "entities/pd/PdTask.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<PD::Entities::PdTask>;

/// The partial-discharge tests; table `pd_task`.
class DATAACCESS_EXPORT PdTaskRepository : public EntityRepository<PD::Entities::PdTask>
{
    Q_OBJECT

public:
    PdTaskRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdTaskRepository() override;
};

} // namespace DataAccess::Repositories
