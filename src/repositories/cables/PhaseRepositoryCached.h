#pragma once

#include "entities/cables/Phase.h"
#include "repositories/RepositoryCache.h"

namespace DataAccess::Repositories {

/// The cache over a PhaseRepository.
class DATAACCESS_EXPORT PhaseRepositoryCached : public RepositoryCache<Cables::Entities::Phase>
{
public:
    explicit PhaseRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Cables::Entities::Phase>>& repository);
    ~PhaseRepositoryCached() override;

    /// The cached phases of the cable @p id, which need not be all of them; only if there is none the table is asked.
    Entities GetByCableId(QUuid id);
};

} // namespace DataAccess::Repositories
