#pragma once

#include "entities/cables/Switchgear.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Switchgear>;

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
