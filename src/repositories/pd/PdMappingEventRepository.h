#pragma once

#include "entities/pd/PdMappingEvent.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<PD::Entities::PdMappingEvent>;

/// The discharges that were located; table `pd_mapping_event`.
class DATAACCESS_EXPORT PdMappingEventRepository : public EntityRepository<PD::Entities::PdMappingEvent>
{
    Q_OBJECT

public:
    PdMappingEventRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                             QObject* parent = nullptr);
    ~PdMappingEventRepository() override;
};

} // namespace DataAccess::Repositories
