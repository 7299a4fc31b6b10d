#pragma once

#include "entities/cables/Segment.h"
#include "repositories/RepositoryCache.h"

namespace DataAccess::Repositories {

/// The cache over a SegmentRepository.
class DATAACCESS_EXPORT SegmentRepositoryCached : public RepositoryCache<Cables::Entities::Segment>
{
public:
    explicit SegmentRepositoryCached(
        const std::shared_ptr<Interfaces::IRepository<Cables::Entities::Segment>>& repository);
    ~SegmentRepositoryCached() override;

    /// The cached segments of the phase @p id, which need not be all of them; only if there is none the table is asked.
    Entities GetByPhaseId(QUuid id);
};

} // namespace DataAccess::Repositories
