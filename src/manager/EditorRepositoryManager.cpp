#include "manager/EditorRepositoryManager.h"

#include "manager/private/RepositorySlots.h"

namespace DataAccess::Interfaces {

IEditorRepositoryManager::~IEditorRepositoryManager() = default;

} // namespace DataAccess::Interfaces

namespace DataAccess::Manager {

using namespace Cables::Entities;

struct EditorRepositoryManager::Data : RepositorySlots<EditorKinds>
{};

EditorRepositoryManager::EditorRepositoryManager(QObject* parent)
    : AbstractRepositoryManager(parent)
    , m_data(std::make_unique<Data>())
{}

EditorRepositoryManager::~EditorRepositoryManager() = default;

EditorRepositoryManager::RepositoryOf<Cable> EditorRepositoryManager::CableRepository() const
{
    return m_data->of<Cable>().plain();
}

EditorRepositoryManager::RepositoryOf<Cable> EditorRepositoryManager::CableRepositoryCached() const
{
    return m_data->of<Cable>().cached();
}

void EditorRepositoryManager::SetCableRepository(const RepositoryOf<Cable>& repository)
{
    install(m_data->of<Cable>(), repository);
}

EditorRepositoryManager::RepositoryOf<Insulation> EditorRepositoryManager::InsulationRepository() const
{
    return m_data->of<Insulation>().plain();
}

EditorRepositoryManager::RepositoryOf<Insulation> EditorRepositoryManager::InsulationRepositoryCached() const
{
    return m_data->of<Insulation>().cached();
}

void EditorRepositoryManager::SetInsulationRepository(const RepositoryOf<Insulation>& repository)
{
    install(m_data->of<Insulation>(), repository);
}

EditorRepositoryManager::RepositoryOf<Owner> EditorRepositoryManager::OwnerRepository() const
{
    return m_data->of<Owner>().plain();
}

EditorRepositoryManager::RepositoryOf<Owner> EditorRepositoryManager::OwnerRepositoryCached() const
{
    return m_data->of<Owner>().cached();
}

void EditorRepositoryManager::SetOwnerRepository(const RepositoryOf<Owner>& repository)
{
    install(m_data->of<Owner>(), repository);
}

EditorRepositoryManager::RepositoryOf<Phase> EditorRepositoryManager::PhaseRepository() const
{
    return m_data->of<Phase>().plain();
}

EditorRepositoryManager::RepositoryOf<Phase> EditorRepositoryManager::PhaseRepositoryCached() const
{
    return m_data->of<Phase>().cached();
}

void EditorRepositoryManager::SetPhaseRepository(const RepositoryOf<Phase>& repository)
{
    install(m_data->of<Phase>(), repository);
}

EditorRepositoryManager::RepositoryOf<Point> EditorRepositoryManager::PointRepository() const
{
    return m_data->of<Point>().plain();
}

EditorRepositoryManager::RepositoryOf<Point> EditorRepositoryManager::PointRepositoryCached() const
{
    return m_data->of<Point>().cached();
}

void EditorRepositoryManager::SetPointRepository(const RepositoryOf<Point>& repository)
{
    install(m_data->of<Point>(), repository);
}

EditorRepositoryManager::RepositoryOf<Rating> EditorRepositoryManager::RatingRepository() const
{
    return m_data->of<Rating>().plain();
}

EditorRepositoryManager::RepositoryOf<Rating> EditorRepositoryManager::RatingRepositoryCached() const
{
    return m_data->of<Rating>().cached();
}

void EditorRepositoryManager::SetRatingRepository(const RepositoryOf<Rating>& repository)
{
    install(m_data->of<Rating>(), repository);
}

EditorRepositoryManager::RepositoryOf<Route> EditorRepositoryManager::RouteRepository() const
{
    return m_data->of<Route>().plain();
}

EditorRepositoryManager::RepositoryOf<Route> EditorRepositoryManager::RouteRepositoryCached() const
{
    return m_data->of<Route>().cached();
}

void EditorRepositoryManager::SetRouteRepository(const RepositoryOf<Route>& repository)
{
    install(m_data->of<Route>(), repository);
}

EditorRepositoryManager::RepositoryOf<SegmentDetail> EditorRepositoryManager::SegmentDetailRepository() const
{
    return m_data->of<SegmentDetail>().plain();
}

EditorRepositoryManager::RepositoryOf<SegmentDetail> EditorRepositoryManager::SegmentDetailRepositoryCached() const
{
    return m_data->of<SegmentDetail>().cached();
}

void EditorRepositoryManager::SetSegmentDetailRepository(const RepositoryOf<SegmentDetail>& repository)
{
    install(m_data->of<SegmentDetail>(), repository);
}

EditorRepositoryManager::RepositoryOf<Segment> EditorRepositoryManager::SegmentRepository() const
{
    return m_data->of<Segment>().plain();
}

EditorRepositoryManager::RepositoryOf<Segment> EditorRepositoryManager::SegmentRepositoryCached() const
{
    return m_data->of<Segment>().cached();
}

void EditorRepositoryManager::SetSegmentRepository(const RepositoryOf<Segment>& repository)
{
    install(m_data->of<Segment>(), repository);
}

EditorRepositoryManager::RepositoryOf<SegmentType> EditorRepositoryManager::SegmentTypeRepository() const
{
    return m_data->of<SegmentType>().plain();
}

EditorRepositoryManager::RepositoryOf<SegmentType> EditorRepositoryManager::SegmentTypeRepositoryCached() const
{
    return m_data->of<SegmentType>().cached();
}

void EditorRepositoryManager::SetSegmentTypeRepository(const RepositoryOf<SegmentType>& repository)
{
    install(m_data->of<SegmentType>(), repository);
}

EditorRepositoryManager::RepositoryOf<Station> EditorRepositoryManager::StationRepository() const
{
    return m_data->of<Station>().plain();
}

EditorRepositoryManager::RepositoryOf<Station> EditorRepositoryManager::StationRepositoryCached() const
{
    return m_data->of<Station>().cached();
}

void EditorRepositoryManager::SetStationRepository(const RepositoryOf<Station>& repository)
{
    install(m_data->of<Station>(), repository);
}

EditorRepositoryManager::RepositoryOf<Switchgear> EditorRepositoryManager::SwitchgearRepository() const
{
    return m_data->of<Switchgear>().plain();
}

EditorRepositoryManager::RepositoryOf<Switchgear> EditorRepositoryManager::SwitchgearRepositoryCached() const
{
    return m_data->of<Switchgear>().cached();
}

void EditorRepositoryManager::SetSwitchgearRepository(const RepositoryOf<Switchgear>& repository)
{
    install(m_data->of<Switchgear>(), repository);
}

EditorRepositoryManager::RepositoryOf<Termination> EditorRepositoryManager::TerminationRepository() const
{
    return m_data->of<Termination>().plain();
}

EditorRepositoryManager::RepositoryOf<Termination> EditorRepositoryManager::TerminationRepositoryCached() const
{
    return m_data->of<Termination>().cached();
}

void EditorRepositoryManager::SetTerminationRepository(const RepositoryOf<Termination>& repository)
{
    install(m_data->of<Termination>(), repository);
}

} // namespace DataAccess::Manager
