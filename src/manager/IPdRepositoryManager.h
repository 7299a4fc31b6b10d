#pragma once

#include "entities/pd/PdFile.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdTask.h"
#include "repositories/IRepository.h"

#include <memory>

namespace DataAccess::Repositories {
class PdFileRepository;
class PdIecOverviewRepository;
class PdLbDiagramRepository;
class PdMappingEventRepository;
class PdReportRepository;
class PdSummaryReporsitory;
class PdTaskRepository;
class PdTaskInfoRepository;
class RatingRepository;
} // namespace DataAccess::Repositories

namespace DataAccess::Interfaces {

/**
 * The repositories of partial-discharge results, and of ratings, plain; tasks, reports and files behind a cache too.
 * Each is null until the manager has been given one.
 */
class DATAACCESS_EXPORT IPdRepositoryManager
{
public:
    virtual ~IPdRepositoryManager();

    // Applications rely on the order of these.
    /// The repository of one kind, which always asks the database, or the view that caches what it has read; null until
    /// the manager has been given one.
    virtual std::shared_ptr<Repositories::PdTaskRepository> PdTaskRepository() const = 0;
    virtual std::shared_ptr<IRepository<PD::Entities::PdTask>> PdTaskRepositoryCached() const = 0;
    virtual std::shared_ptr<Repositories::PdReportRepository> PdReportRepository() const = 0;
    virtual std::shared_ptr<IRepository<PD::Entities::PdReport>> PdReportRepositoryCached() const = 0;
    virtual std::shared_ptr<Repositories::PdFileRepository> PdFileRepository() const = 0;
    virtual std::shared_ptr<IRepository<PD::Entities::PdFile>> PdFileRepositoryCached() const = 0;
    virtual std::shared_ptr<Repositories::PdMappingEventRepository> PdMappingEventRepository() const = 0;
    virtual std::shared_ptr<Repositories::PdIecOverviewRepository> PdIecOverviewRepository() const = 0;
    virtual std::shared_ptr<Repositories::PdSummaryReporsitory> PdSummaryRepository() const = 0;
    virtual std::shared_ptr<Repositories::RatingRepository> RatingRepository() const = 0;
    virtual std::shared_ptr<Repositories::PdTaskInfoRepository> PdTaskInfoRepository() const = 0;
    virtual std::shared_ptr<Repositories::PdLbDiagramRepository> PdLbDiagramRepository() const = 0;

protected:
    IPdRepositoryManager() = default;
    IPdRepositoryManager(const IPdRepositoryManager&) = default;
    IPdRepositoryManager& operator=(const IPdRepositoryManager&) = default;
};

} // namespace DataAccess::Interfaces
