#pragma once

#include "entities/pd/PdReport.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

/**
 * The reports; table `pd_report`, and `pd_filter` for their filters. A report is read, written and removed together
 * with its filter: when one of both fails, so does the other.
 */
class DATAACCESS_EXPORT PdReportRepository : public EntityRepository<PD::Entities::PdReport>
{
    Q_OBJECT

public:
    PdReportRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                       const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdReportRepository() override;

    Task<bool>* RemoveAsync(EntityList entities) override;
};

} // namespace DataAccess::Repositories
