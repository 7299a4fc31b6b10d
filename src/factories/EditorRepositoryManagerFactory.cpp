#include "factories/EditorRepositoryManagerFactory.h"

#include "factories/SharedChild.h"
#include "repositories/cables/CableRepository.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PlainRepositories.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/cables/StationRepository.h"

namespace DataAccess::Factories {

using namespace Repositories;

EditorRepositoryManagerFactory::EditorRepositoryManagerFactory(QObject* parent)
    : QObject(parent)
{}

EditorRepositoryManagerFactory::~EditorRepositoryManagerFactory() = default;

std::shared_ptr<Manager::EditorRepositoryManager>
EditorRepositoryManagerFactory::create(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy)
{
    auto manager = makeSharedChild<Manager::EditorRepositoryManager>(parent());
    manager->SetCableRepository(std::make_shared<CableRepository>(worker, strategy, manager));
    manager->SetInsulationRepository(std::make_shared<InsulationRepository>(worker, strategy, manager));
    manager->SetOwnerRepository(std::make_shared<OwnerRepository>(worker, strategy, manager));
    manager->SetPhaseRepository(std::make_shared<PhaseRepository>(worker, strategy, manager));
    manager->SetPointRepository(std::make_shared<PointRepository>(worker, strategy, manager));
    manager->SetRatingRepository(std::make_shared<RatingRepository>(worker, strategy, manager));
    manager->SetRouteRepository(std::make_shared<RouteRepository>(worker, strategy, manager));
    manager->SetSegmentDetailRepository(std::make_shared<SegmentDetailRepository>(worker, strategy, manager));
    manager->SetSegmentRepository(std::make_shared<SegmentRepository>(worker, strategy, manager));
    manager->SetSegmentTypeRepository(std::make_shared<SegmentTypeRepository>(worker, strategy, manager));
    manager->SetStationRepository(std::make_shared<StationRepository>(worker, strategy, manager));
    manager->SetSwitchgearRepository(std::make_shared<SwitchgearRepository>(worker, strategy, manager));
    manager->SetTerminationRepository(std::make_shared<TerminationRepository>(worker, strategy, manager));
    return manager;
}

} // namespace DataAccess::Factories
