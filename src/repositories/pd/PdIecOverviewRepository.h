#pragma once

#include "entities/pd/PdIecOverview.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<PD::Entities::PdIecOverview>;

/// The results of the phases of reports; table `pd_iec_overview`.
class DATAACCESS_EXPORT PdIecOverviewRepository : public EntityRepository<PD::Entities::PdIecOverview>
{
    Q_OBJECT

public:
    PdIecOverviewRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                            const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                            QObject* parent = nullptr);
    ~PdIecOverviewRepository() override;
};

} // namespace DataAccess::Repositories
