#pragma once

#include "entities/cables/Station.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

/**
 * The stations; table `ce_station`.
 *
 * Under the loading strategy WithoutImages a station comes with a null image. An update of a station that never had its
 * image from this repository keeps the stored one when its own is null; to remove an image, clear it in the object that
 * was loaded with it.
 */
class DATAACCESS_EXPORT StationRepository : public EntityRepository<Cables::Entities::Station>
{
    Q_OBJECT

public:
    StationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                      const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~StationRepository() override;

    /// Brings the stored image into @p station, on the worker's thread, and leaves its state as it is. Returns at once.
    void LoadImage(std::shared_ptr<Cables::Entities::Station> station);
};

} // namespace DataAccess::Repositories
