#include "repositories/cables/PhaseRepositoryCached.h"

#include "repositories/cables/PhaseRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Phase;

PhaseRepositoryCached::PhaseRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Phase>>& repository)
    : RepositoryCache(repository)
{}

PhaseRepositoryCached::~PhaseRepositoryCached() = default;

PhaseRepositoryCached::Entities PhaseRepositoryCached::GetByCableId(QUuid id)
{
    const auto matches = [&id](const Phase& phase) { return phase.CableId() == id; };
    const auto query = [&id](PhaseRepository& phases) { return phases.GetByCableId(id); };
    return searchOrAsk<PhaseRepository>(matches, query, Q_FUNC_INFO);
}

} // namespace DataAccess::Repositories
