#pragma once

#include "entities/cables/Rating.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

/// The evaluations of measurements of cables; table `qor_rating`.
class DATAACCESS_EXPORT RatingRepository : public EntityRepository<Cables::Entities::Rating>
{
    Q_OBJECT

public:
    RatingRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~RatingRepository() override;
};

} // namespace DataAccess::Repositories
