#pragma once

#include "entities/cables/Cable.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

/**
 * The cables; table `ce_cable`. A cable comes with what its latest evaluation says of itself: the rating measure id and
 * a rating that has no id of its own, for display only. In a database without the tables of the cable book there is
 * none.
 */
class DATAACCESS_EXPORT CableRepository : public EntityRepository<Cables::Entities::Cable>
{
    Q_OBJECT

public:
    CableRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~CableRepository() override;
};

} // namespace DataAccess::Repositories
