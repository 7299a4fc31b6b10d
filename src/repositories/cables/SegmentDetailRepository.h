#pragma once

#include "entities/cables/SegmentDetail.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::SegmentDetail>;

/// What segments are made of; table `ce_segment_detail`.
class DATAACCESS_EXPORT SegmentDetailRepository : public EntityRepository<Cables::Entities::SegmentDetail>
{
    Q_OBJECT

public:
    SegmentDetailRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                            const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                            QObject* parent = nullptr);
    ~SegmentDetailRepository() override;
};

} // namespace DataAccess::Repositories
