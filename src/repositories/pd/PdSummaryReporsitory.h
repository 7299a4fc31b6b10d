#pragma once

#include "entities/pd/PdSummary.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<PD::Entities::PdSummary>;

/// What was measured for reports; table `pd_summary`. The odd spelling of the name is the one that callers use.
class DATAACCESS_EXPORT PdSummaryReporsitory : public EntityRepository<PD::Entities::PdSummary>
{
    Q_OBJECT

public:
    PdSummaryReporsitory(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdSummaryReporsitory() override;
};

} // namespace DataAccess::Repositories
