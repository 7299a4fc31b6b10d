#pragma once

#include "entities/cables/Segment.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::Segment>;

/// The segments of phases; table `ce_segment`.
class DATAACCESS_EXPORT SegmentRepository : public EntityRepository<Cables::Entities::Segment>
{
    Q_OBJECT

public:
    SegmentRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                      const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~SegmentRepository() override;

    /// The segments of the phase @p id. The caller owns the task.
    Task<Entities>* GetByPhaseIdAsync(QUuid id);
    /// The same, waiting for the result.
    Entities GetByPhaseId(QUuid id);
};

} // namespace DataAccess::Repositories
