#include "manager/PdRepositoryManager.h"

#include "repositories/RepositoryCache.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"

namespace DataAccess::Interfaces {

IPdRepositoryManager::~IPdRepositoryManager() = default;

} // namespace DataAccess::Interfaces

namespace DataAccess::Manager {

using PD::Entities::PdFile;
using PD::Entities::PdReport;
using PD::Entities::PdTask;
using Repositories::RepositoryCache;

struct PdRepositoryManager::Data
{
    RepositorySlot<Repositories::PdFileRepository, RepositoryCache<PdFile>> file;
    RepositorySlot<Repositories::PdReportRepository, RepositoryCache<PdReport>> report;
    RepositorySlot<Repositories::PdTaskRepository, RepositoryCache<PdTask>> task;
    std::shared_ptr<Repositories::PdIecOverviewRepository> iecOverview;
    std::shared_ptr<Repositories::PdMappingEventRepository> mappingEvent;
    std::shared_ptr<Repositories::PdLbDiagramRepository> lbDiagram;
    std::shared_ptr<Repositories::PdSummaryReporsitory> summary;
    std::shared_ptr<Repositories::PdTaskInfoRepository> taskInfo;
    std::shared_ptr<Repositories::RatingRepository> rating;
};

PdRepositoryManager::PdRepositoryManager(QObject* parent)
    : AbstractRepositoryManager(parent)
    , m_data(std::make_unique<Data>())
{}

PdRepositoryManager::~PdRepositoryManager() = default;

std::shared_ptr<Repositories::PdFileRepository> PdRepositoryManager::PdFileRepository() const
{
    return m_data->file.plain();
}

std::shared_ptr<Interfaces::IRepository<PdFile>> PdRepositoryManager::PdFileRepositoryCached() const
{
    return m_data->file.cached();
}

void PdRepositoryManager::SetPdFileRepository(const std::shared_ptr<Repositories::PdFileRepository>& repository)
{
    install(m_data->file, repository);
}

std::shared_ptr<Repositories::PdReportRepository> PdRepositoryManager::PdReportRepository() const
{
    return m_data->report.plain();
}

std::shared_ptr<Interfaces::IRepository<PdReport>> PdRepositoryManager::PdReportRepositoryCached() const
{
    return m_data->report.cached();
}

void PdRepositoryManager::SetPdReportRepository(const std::shared_ptr<Repositories::PdReportRepository>& repository)
{
    install(m_data->report, repository);
}

std::shared_ptr<Repositories::PdTaskRepository> PdRepositoryManager::PdTaskRepository() const
{
    return m_data->task.plain();
}

std::shared_ptr<Interfaces::IRepository<PdTask>> PdRepositoryManager::PdTaskRepositoryCached() const
{
    return m_data->task.cached();
}

void PdRepositoryManager::SetPdTaskRepository(const std::shared_ptr<Repositories::PdTaskRepository>& repository)
{
    install(m_data->task, repository);
}

std::shared_ptr<Repositories::PdIecOverviewRepository> PdRepositoryManager::PdIecOverviewRepository() const
{
    return m_data->iecOverview;
}

void PdRepositoryManager::SetPdIecOverviewRepository(
    const std::shared_ptr<Repositories::PdIecOverviewRepository>& repository)
{
    m_data->iecOverview = repository;
}

std::shared_ptr<Repositories::PdMappingEventRepository> PdRepositoryManager::PdMappingEventRepository() const
{
    return m_data->mappingEvent;
}

void PdRepositoryManager::SetPdMappingEventRepository(
    const std::shared_ptr<Repositories::PdMappingEventRepository>& repository)
{
    m_data->mappingEvent = repository;
}

std::shared_ptr<Repositories::PdLbDiagramRepository> PdRepositoryManager::PdLbDiagramRepository() const
{
    return m_data->lbDiagram;
}

void PdRepositoryManager::SetPdLbDiagramRepository(
    const std::shared_ptr<Repositories::PdLbDiagramRepository>& repository)
{
    m_data->lbDiagram = repository;
}

std::shared_ptr<Repositories::PdSummaryReporsitory> PdRepositoryManager::PdSummaryRepository() const
{
    return m_data->summary;
}

void PdRepositoryManager::SetPdSummaryRepository(const std::shared_ptr<Repositories::PdSummaryReporsitory>& repository)
{
    m_data->summary = repository;
}

std::shared_ptr<Repositories::PdTaskInfoRepository> PdRepositoryManager::PdTaskInfoRepository() const
{
    return m_data->taskInfo;
}

void PdRepositoryManager::SetPdTaskInfoRepository(const std::shared_ptr<Repositories::PdTaskInfoRepository>& repository)
{
    m_data->taskInfo = repository;
}

std::shared_ptr<Repositories::RatingRepository> PdRepositoryManager::RatingRepository() const
{
    return m_data->rating;
}

void PdRepositoryManager::SetRatingRepository(const std::shared_ptr<Repositories::RatingRepository>& repository)
{
    m_data->rating = repository;
}

} // namespace DataAccess::Manager
