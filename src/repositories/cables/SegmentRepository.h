#pragma once

#include "entities/cables/Segment.h"
#include "repositories/EntityRepository.h"
#include "repositories/RepositoryCache.h"

namespace DataAccess::Repositories {

/// The segments of phases; table `ce_segment`.
class DATAACCESS_EXPORT SegmentRepository : public EntityRepository<Cables::Entities::Segment>
{
    Q_OBJECT

public:
    /// Makes a repository on @p worker; see Repository.
    SegmentRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                      const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~SegmentRepository() override;

    /// The segments of the phase @p id. The caller owns the task.
    Task<Entities>* GetByPhaseIdAsync(QUuid id);
    /// The same, waiting for the result.
    Entities GetByPhaseId(QUuid id);
};

/// The cache over a SegmentRepository.
class DATAACCESS_EXPORT SegmentRepositoryCached : public RepositoryCache<Cables::Entities::Segment>
{
public:
    /// Shares @p repository, which may be null.
    explicit SegmentRepositoryCached(
        const std::shared_ptr<Interfaces::IRepository<Cables::Entities::Segment>>& repository);
    ~SegmentRepositoryCached() override;

    /// The cached segments of the phase @p id, which need not be all of them; only if there is none the table is asked.
    Entities GetByPhaseId(QUuid id);
};

} // namespace DataAccess::Repositories
