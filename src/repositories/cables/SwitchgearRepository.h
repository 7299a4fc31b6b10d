#pragma once

#include "entities/cables/Switchgear.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

/// The kinds of switchgear at the ends of cables; table `ce_switchgear`.
class DATAACCESS_EXPORT SwitchgearRepository : public EntityRepository<Cables::Entities::Switchgear>
{
    Q_OBJECT

public:
    SwitchgearRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~SwitchgearRepository() override;
};

} // namespace DataAccess::Repositories
