#pragma once

#include "entities/cables/Route.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Route>;

/// The routes of cables; table `ce_route`. The ids of a route's points are one text, joined with "#".
class DATAACCESS_EXPORT RouteRepository : public EntityRepository<Cables::Entities::Route>
{
    Q_OBJECT

public:
    RouteRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~RouteRepository() override;
};

} // namespace DataAccess::Repositories
