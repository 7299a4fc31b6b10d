#pragma once

#include "entities/cables/SegmentType.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<Cables::Entities::SegmentType>;

/// The types of segments, cable section or joint; table `ce_segmenttype`.
class DATAACCESS_EXPORT SegmentTypeRepository : public EntityRepository<Cables::Entities::SegmentType>
{
    Q_OBJECT

public:
    SegmentTypeRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                          const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                          QObject* parent = nullptr);
    ~SegmentTypeRepository() override;
};

} // namespace DataAccess::Repositories
