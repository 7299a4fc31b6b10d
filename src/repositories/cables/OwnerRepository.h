#pragma once

#include "entities/cables/Owner.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Owner>;

/// The owners of cables; table `ce_owner`.
class DATAACCESS_EXPORT OwnerRepository : public EntityRepository<Cables::Entities::Owner>
{
    Q_OBJECT

public:
    OwnerRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~OwnerRepository() override;
};

} // namespace DataAccess::Repositories
