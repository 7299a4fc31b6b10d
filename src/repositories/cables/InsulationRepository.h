#pragma once

#include "entities/cables/Insulation.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Insulation>;

/// The insulation materials; table `ce_insulation`.
class DATAACCESS_EXPORT InsulationRepository : public EntityRepository<Cables::Entities::Insulation>
{
    Q_OBJECT

public:
    InsulationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~InsulationRepository() override;
};

} // namespace DataAccess::Repositories
