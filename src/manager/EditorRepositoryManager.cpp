#include "manager/EditorRepositoryManager.h"

#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/SegmentRepository.h"

namespace DataAccess::Interfaces {

IEditorRepositoryManager::~IEditorRepositoryManager() = default;

} // namespace DataAccess::Interfaces

namespace DataAccess::Manager {

using Cables::Entities::Cable;
using Cables::Entities::Insulation;
using Cables::Entities::Owner;
using Cables::Entities::Phase;
using Cables::Entities::Point;
using Cables::Entities::Rating;
using Cables::Entities::Route;
using Cables::Entities::Segment;
using Cables::Entities::SegmentDetail;
using Cables::Entities::SegmentType;
using Cables::Entities::Station;
using Cables::Entities::Switchgear;
using Cables::Entities::Termination;
using Interfaces::IRepository;

namespace {

template <typename T, typename Cache = Repositories::RepositoryCache<T>>
using Slot = RepositorySlot<IRepository<T>, Cache>;

} // namespace

struct EditorRepositoryManager::Data
{
    Slot<Cable> cable;
    Slot<Insulation> insulation;
    Slot<Owner> owner;
    Slot<Phase, Repositories::PhaseRepositoryCached> phase;
    Slot<Point, Repositories::PointRepositoryCached> point;
    Slot<Rating> rating;
    Slot<Route> route;
    Slot<SegmentDetail> segmentDetail;
    Slot<Segment, Repositories::SegmentRepositoryCached> segment;
    Slot<SegmentType> segmentType;
    Slot<Station> station;
    Slot<Switchgear> switchgear;
    Slot<Termination> termination;
};

EditorRepositoryManager::EditorRepositoryManager(QObject* parent)
    : AbstractRepositoryManager(parent)
    , m_data(std::make_unique<Data>())
{}

EditorRepositoryManager::~EditorRepositoryManager() = default;

std::shared_ptr<IRepository<Cable>> EditorRepositoryManager::CableRepository() const
{
    return m_data->cable.plain();
}

std::shared_ptr<IRepository<Cable>> EditorRepositoryManager::CableRepositoryCached() const
{
    return m_data->cable.cached();
}

void EditorRepositoryManager::SetCableRepository(const std::shared_ptr<IRepository<Cable>>& repository)
{
    install(m_data->cable, repository);
}

std::shared_ptr<IRepository<Insulation>> EditorRepositoryManager::InsulationRepository() const
{
    return m_data->insulation.plain();
}

std::shared_ptr<IRepository<Insulation>> EditorRepositoryManager::InsulationRepositoryCached() const
{
    return m_data->insulation.cached();
}

void EditorRepositoryManager::SetInsulationRepository(const std::shared_ptr<IRepository<Insulation>>& repository)
{
    install(m_data->insulation, repository);
}

std::shared_ptr<IRepository<Owner>> EditorRepositoryManager::OwnerRepository() const
{
    return m_data->owner.plain();
}

std::shared_ptr<IRepository<Owner>> EditorRepositoryManager::OwnerRepositoryCached() const
{
    return m_data->owner.cached();
}

void EditorRepositoryManager::SetOwnerRepository(const std::shared_ptr<IRepository<Owner>>& repository)
{
    install(m_data->owner, repository);
}

std::shared_ptr<IRepository<Phase>> EditorRepositoryManager::PhaseRepository() const
{
    return m_data->phase.plain();
}

std::shared_ptr<IRepository<Phase>> EditorRepositoryManager::PhaseRepositoryCached() const
{
    return m_data->phase.cached();
}

void EditorRepositoryManager::SetPhaseRepository(const std::shared_ptr<IRepository<Phase>>& repository)
{
    install(m_data->phase, repository);
}

std::shared_ptr<IRepository<Point>> EditorRepositoryManager::PointRepository() const
{
    return m_data->point.plain();
}

std::shared_ptr<IRepository<Point>> EditorRepositoryManager::PointRepositoryCached() const
{
    return m_data->point.cached();
}

void EditorRepositoryManager::SetPointRepository(const std::shared_ptr<IRepository<Point>>& repository)
{
    install(m_data->point, repository);
}

std::shared_ptr<IRepository<Rating>> EditorRepositoryManager::RatingRepository() const
{
    return m_data->rating.plain();
}

std::shared_ptr<IRepository<Rating>> EditorRepositoryManager::RatingRepositoryCached() const
{
    return m_data->rating.cached();
}

void EditorRepositoryManager::SetRatingRepository(const std::shared_ptr<IRepository<Rating>>& repository)
{
    install(m_data->rating, repository);
}

std::shared_ptr<IRepository<Route>> EditorRepositoryManager::RouteRepository() const
{
    return m_data->route.plain();
}

std::shared_ptr<IRepository<Route>> EditorRepositoryManager::RouteRepositoryCached() const
{
    return m_data->route.cached();
}

void EditorRepositoryManager::SetRouteRepository(const std::shared_ptr<IRepository<Route>>& repository)
{
    install(m_data->route, repository);
}

std::shared_ptr<IRepository<SegmentDetail>> EditorRepositoryManager::SegmentDetailRepository() const
{
    return m_data->segmentDetail.plain();
}

std::shared_ptr<IRepository<SegmentDetail>> EditorRepositoryManager::SegmentDetailRepositoryCached() const
{
    return m_data->segmentDetail.cached();
}

void EditorRepositoryManager::SetSegmentDetailRepository(const std::shared_ptr<IRepository<SegmentDetail>>& repository)
{
    install(m_data->segmentDetail, repository);
}

std::shared_ptr<IRepository<Segment>> EditorRepositoryManager::SegmentRepository() const
{
    return m_data->segment.plain();
}

std::shared_ptr<IRepository<Segment>> EditorRepositoryManager::SegmentRepositoryCached() const
{
    return m_data->segment.cached();
}

void EditorRepositoryManager::SetSegmentRepository(const std::shared_ptr<IRepository<Segment>>& repository)
{
    install(m_data->segment, repository);
}

std::shared_ptr<IRepository<SegmentType>> EditorRepositoryManager::SegmentTypeRepository() const
{
    return m_data->segmentType.plain();
}

std::shared_ptr<IRepository<SegmentType>> EditorRepositoryManager::SegmentTypeRepositoryCached() const
{
    return m_data->segmentType.cached();
}

void EditorRepositoryManager::SetSegmentTypeRepository(const std::shared_ptr<IRepository<SegmentType>>& repository)
{
    install(m_data->segmentType, repository);
}

std::shared_ptr<IRepository<Station>> EditorRepositoryManager::StationRepository() const
{
    return m_data->station.plain();
}

std::shared_ptr<IRepository<Station>> EditorRepositoryManager::StationRepositoryCached() const
{
    return m_data->station.cached();
}

void EditorRepositoryManager::SetStationRepository(const std::shared_ptr<IRepository<Station>>& repository)
{
    install(m_data->station, repository);
}

std::shared_ptr<IRepository<Switchgear>> EditorRepositoryManager::SwitchgearRepository() const
{
    return m_data->switchgear.plain();
}

std::shared_ptr<IRepository<Switchgear>> EditorRepositoryManager::SwitchgearRepositoryCached() const
{
    return m_data->switchgear.cached();
}

void EditorRepositoryManager::SetSwitchgearRepository(const std::shared_ptr<IRepository<Switchgear>>& repository)
{
    install(m_data->switchgear, repository);
}

std::shared_ptr<IRepository<Termination>> EditorRepositoryManager::TerminationRepository() const
{
    return m_data->termination.plain();
}

std::shared_ptr<IRepository<Termination>> EditorRepositoryManager::TerminationRepositoryCached() const
{
    return m_data->termination.cached();
}

void EditorRepositoryManager::SetTerminationRepository(const std::shared_ptr<IRepository<Termination>>& repository)
{
    install(m_data->termination, repository);
}

} // namespace DataAccess::Manager
