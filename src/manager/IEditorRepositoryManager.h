#pragma once

#include "entities/cables/Cable.h"
#include "entities/cables/Insulation.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Phase.h"
#include "entities/cables/Point.h"
#include "entities/cables/Rating.h"
#include "entities/cables/Route.h"
#include "entities/cables/Segment.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "entities/cables/Station.h"
#include "entities/cables/Switchgear.h"
#include "entities/cables/Termination.h"
#include "repositories/IRepository.h"

#include <memory>

namespace DataAccess::Interfaces {

/// The repositories of the cable network, plain and behind a cache. Each is null until the manager has been given one.
class DATAACCESS_EXPORT IEditorRepositoryManager
{
public:
    /// A repository, plain or behind a cache.
    template <typename T>
    using RepositoryOf = std::shared_ptr<IRepository<T>>;

    virtual ~IEditorRepositoryManager();

    // Applications rely on the order of these.
    /// The repository of one kind, which always asks the database, or the view that caches what it has read; null until
    /// the manager has been given one.
    virtual RepositoryOf<Cables::Entities::Point> PointRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Point> PointRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Rating> RatingRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Rating> RatingRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Route> RouteRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Route> RouteRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Station> StationRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Station> StationRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Cable> CableRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Cable> CableRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Phase> PhaseRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Phase> PhaseRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Segment> SegmentRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Segment> SegmentRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Insulation> InsulationRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Insulation> InsulationRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::SegmentDetail> SegmentDetailRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::SegmentDetail> SegmentDetailRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::SegmentType> SegmentTypeRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::SegmentType> SegmentTypeRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Owner> OwnerRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Owner> OwnerRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Termination> TerminationRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Termination> TerminationRepositoryCached() const = 0;
    virtual RepositoryOf<Cables::Entities::Switchgear> SwitchgearRepository() const = 0;
    virtual RepositoryOf<Cables::Entities::Switchgear> SwitchgearRepositoryCached() const = 0;

protected:
    IEditorRepositoryManager() = default;
    IEditorRepositoryManager(const IEditorRepositoryManager&) = default;
    IEditorRepositoryManager& operator=(const IEditorRepositoryManager&) = default;
};

} // namespace DataAccess::Interfaces
