#include "factories/PdRepositoryManagerFactory.h"

#include "repositories/cables/RatingRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"

namespace DataAccess::Factories {

using namespace Repositories;

PdRepositoryManagerFactory::PdRepositoryManagerFactory(QObject* parent)
    : QObject(parent)
{}

PdRepositoryManagerFactory::~PdRepositoryManagerFactory() = default;

std::shared_ptr<Manager::PdRepositoryManager>
PdRepositoryManagerFactory::create(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy)
{
    auto manager = std::make_shared<Manager::PdRepositoryManager>();
    manager->SetPdTaskRepository(std::make_shared<PdTaskRepository>(worker, strategy, manager));
    manager->SetPdReportRepository(std::make_shared<PdReportRepository>(worker, strategy, manager));
    manager->SetPdFileRepository(std::make_shared<PdFileRepository>(worker, strategy, manager));
    manager->SetPdMappingEventRepository(std::make_shared<PdMappingEventRepository>(worker, strategy, manager));
    manager->SetPdIecOverviewRepository(std::make_shared<PdIecOverviewRepository>(worker, strategy, manager));
    manager->SetPdSummaryRepository(std::make_shared<PdSummaryReporsitory>(worker, strategy, manager));
    manager->SetRatingRepository(std::make_shared<RatingRepository>(worker, strategy, manager));
    manager->SetPdTaskInfoRepository(std::make_shared<PdTaskInfoRepository>(worker, strategy, manager));
    manager->SetPdLbDiagramRepository(std::make_shared<PdLbDiagramRepository>(worker, strategy, manager));
    return manager;
}

} // namespace DataAccess::Factories
