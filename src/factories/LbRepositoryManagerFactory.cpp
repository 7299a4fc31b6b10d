#include "factories/LbRepositoryManagerFactory.h"

#include "factories/SharedChild.h"
#include "repositories/lb/CablebookMeasuresRepository.h"

namespace DataAccess::Factories {

using namespace Repositories;

LbRepositoryManagerFactory::LbRepositoryManagerFactory(QObject* parent)
    : QObject(parent)
{}

LbRepositoryManagerFactory::~LbRepositoryManagerFactory() = default;

std::shared_ptr<Manager::LbRepositoryManager>
LbRepositoryManagerFactory::create(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy)
{
    auto manager = makeSharedChild<Manager::LbRepositoryManager>(parent());
    manager->SetCablebookMeasuresRepository(std::make_shared<CablebookMeasuresRepository>(worker, strategy, manager));
    return manager;
}

} // namespace DataAccess::Factories
