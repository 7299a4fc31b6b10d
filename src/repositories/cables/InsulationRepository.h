#pragma once

#include "entities/cables/Insulation.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

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
