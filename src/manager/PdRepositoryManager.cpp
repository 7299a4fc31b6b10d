#include "manager/PdRepositoryManager.h"

#include "manager/private/RepositorySlots.h"

namespace DataAccess::Interfaces {

IPdRepositoryManager::~IPdRepositoryManager() = default;

} // namespace DataAccess::Interfaces

namespace DataAccess::Manager {

using namespace PD::Entities;
using Cables::Entities::Rating;

struct PdRepositoryManager::Data : RepositorySlots<PdKinds>
{};

PdRepositoryManager::PdRepositoryManager(QObject* parent)
    : AbstractRepositoryManager(parent)
    , m_data(std::make_unique<Data>())
{}

PdRepositoryManager::~PdRepositoryManager() = default;

std::shared_ptr<Repositories::PdFileRepository> PdRepositoryManager::PdFileRepository() const
{
    return m_data->of<PdFile>().plain();
}

std::shared_ptr<Interfaces::IRepository<PdFile>> PdRepositoryManager::PdFileRepositoryCached() const
{
    return m_data->of<PdFile>().cached();
}

void PdRepositoryManager::SetPdFileRepository(const std::shared_ptr<Repositories::PdFileRepository>& repository)
{
    install(m_data->of<PdFile>(), repository);
}

std::shared_ptr<Repositories::PdReportRepository> PdRepositoryManager::PdReportRepository() const
{
    return m_data->of<PdReport>().plain();
}

std::shared_ptr<Interfaces::IRepository<PdReport>> PdRepositoryManager::PdReportRepositoryCached() const
{
    return m_data->of<PdReport>().cached();
}

void PdRepositoryManager::SetPdReportRepository(const std::shared_ptr<Repositories::PdReportRepository>& repository)
{
    install(m_data->of<PdReport>(), repository);
}

std::shared_ptr<Repositories::PdTaskRepository> PdRepositoryManager::PdTaskRepository() const
{
    return m_data->of<PdTask>().plain();
}

std::shared_ptr<Interfaces::IRepository<PdTask>> PdRepositoryManager::PdTaskRepositoryCached() const
{
    return m_data->of<PdTask>().cached();
}

void PdRepositoryManager::SetPdTaskRepository(const std::shared_ptr<Repositories::PdTaskRepository>& repository)
{
    install(m_data->of<PdTask>(), repository);
}

std::shared_ptr<Repositories::PdIecOverviewRepository> PdRepositoryManager::PdIecOverviewRepository() const
{
    return m_data->of<PdIecOverview>().plain();
}

void PdRepositoryManager::SetPdIecOverviewRepository(
    const std::shared_ptr<Repositories::PdIecOverviewRepository>& repository)
{
    install(m_data->of<PdIecOverview>(), repository);
}

std::shared_ptr<Repositories::PdMappingEventRepository> PdRepositoryManager::PdMappingEventRepository() const
{
    return m_data->of<PdMappingEvent>().plain();
}

void PdRepositoryManager::SetPdMappingEventRepository(
    const std::shared_ptr<Repositories::PdMappingEventRepository>& repository)
{
    install(m_data->of<PdMappingEvent>(), repository);
}

std::shared_ptr<Repositories::PdLbDiagramRepository> PdRepositoryManager::PdLbDiagramRepository() const
{
    return m_data->of<PdLbDiagram>().plain();
}

void PdRepositoryManager::SetPdLbDiagramRepository(
    const std::shared_ptr<Repositories::PdLbDiagramRepository>& repository)
{
    install(m_data->of<PdLbDiagram>(), repository);
}

std::shared_ptr<Repositories::PdSummaryReporsitory> PdRepositoryManager::PdSummaryRepository() const
{
    return m_data->of<PdSummary>().plain();
}

void PdRepositoryManager::SetPdSummaryRepository(const std::shared_ptr<Repositories::PdSummaryReporsitory>& repository)
{
    install(m_data->of<PdSummary>(), repository);
}

std::shared_ptr<Repositories::PdTaskInfoRepository> PdRepositoryManager::PdTaskInfoRepository() const
{
    return m_data->of<PdTaskInfo>().plain();
}

void PdRepositoryManager::SetPdTaskInfoRepository(const std::shared_ptr<Repositories::PdTaskInfoRepository>& repository)
{
    install(m_data->of<PdTaskInfo>(), repository);
}

std::shared_ptr<Repositories::RatingRepository> PdRepositoryManager::RatingRepository() const
{
    return m_data->of<Rating>().plain();
}

void PdRepositoryManager::SetRatingRepository(const std::shared_ptr<Repositories::RatingRepository>& repository)
{
    install(m_data->of<Rating>(), repository);
}

} // namespace DataAccess::Manager
