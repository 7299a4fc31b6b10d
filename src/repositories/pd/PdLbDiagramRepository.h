#pragma once

#include "entities/pd/PdLbDiagram.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<PD::Entities::PdLbDiagram>;

/// The settings of the diagrams of reports; table `pd_lbdiagram`.
class DATAACCESS_EXPORT PdLbDiagramRepository : public EntityRepository<PD::Entities::PdLbDiagram>
{
    Q_OBJECT

public:
    PdLbDiagramRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                          const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                          QObject* parent = nullptr);
    ~PdLbDiagramRepository() override;
};

} // namespace DataAccess::Repositories
