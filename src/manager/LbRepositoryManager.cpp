#include "manager/LbRepositoryManager.h"

#include "repositories/RepositoryCache.h"

namespace DataAccess::Interfaces {

ILbRepositoryManager::~ILbRepositoryManager() = default;

} // namespace DataAccess::Interfaces

namespace DataAccess::Manager {

struct LbRepositoryManager::Data
{
    RepositorySlot<Measures, Repositories::RepositoryCache<LB::Entities::CablebookMeasure>> measures;
};

LbRepositoryManager::LbRepositoryManager(QObject* parent)
    : AbstractRepositoryManager(parent)
    , m_data(std::make_unique<Data>())
{}

LbRepositoryManager::~LbRepositoryManager() = default;

std::shared_ptr<LbRepositoryManager::Measures> LbRepositoryManager::CablebookMeasuresRepository() const
{
    return m_data->measures.plain();
}

std::shared_ptr<LbRepositoryManager::Measures> LbRepositoryManager::CablebookMeasuresRepositoryCached() const
{
    return m_data->measures.cached();
}

void LbRepositoryManager::SetCablebookMeasuresRepository(const std::shared_ptr<Measures>& repository)
{
    install(m_data->measures, repository);
}

} // namespace DataAccess::Manager
