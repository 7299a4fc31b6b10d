#pragma once

#include "manager/AbstractRepositoryManager.h"
#include "manager/IEditorRepositoryManager.h"

namespace DataAccess::Manager {

/**
 * Owns the thirteen repositories of the cable network and a cached view over each. Another repository comes with a new,
 * empty view; the one already set keeps its view and what that has cached.
 */
class DATAACCESS_EXPORT EditorRepositoryManager : public AbstractRepositoryManager,
                                                  public Interfaces::IEditorRepositoryManager
{
    Q_OBJECT

public:
    /// Has no repositories yet. Its owner is whoever shares it, not @p parent.
    explicit EditorRepositoryManager(QObject* parent = nullptr);
    ~EditorRepositoryManager() override;
    EditorRepositoryManager(const EditorRepositoryManager&) = delete;
    EditorRepositoryManager& operator=(const EditorRepositoryManager&) = delete;

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Cable> CableRepository() const override;
    RepositoryOf<Cables::Entities::Cable> CableRepositoryCached() const override;
    void SetCableRepository(const RepositoryOf<Cables::Entities::Cable>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Insulation> InsulationRepository() const override;
    RepositoryOf<Cables::Entities::Insulation> InsulationRepositoryCached() const override;
    void SetInsulationRepository(const RepositoryOf<Cables::Entities::Insulation>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Owner> OwnerRepository() const override;
    RepositoryOf<Cables::Entities::Owner> OwnerRepositoryCached() const override;
    void SetOwnerRepository(const RepositoryOf<Cables::Entities::Owner>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Phase> PhaseRepository() const override;
    RepositoryOf<Cables::Entities::Phase> PhaseRepositoryCached() const override;
    void SetPhaseRepository(const RepositoryOf<Cables::Entities::Phase>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Point> PointRepository() const override;
    RepositoryOf<Cables::Entities::Point> PointRepositoryCached() const override;
    void SetPointRepository(const RepositoryOf<Cables::Entities::Point>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Rating> RatingRepository() const override;
    RepositoryOf<Cables::Entities::Rating> RatingRepositoryCached() const override;
    void SetRatingRepository(const RepositoryOf<Cables::Entities::Rating>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Route> RouteRepository() const override;
    RepositoryOf<Cables::Entities::Route> RouteRepositoryCached() const override;
    void SetRouteRepository(const RepositoryOf<Cables::Entities::Route>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::SegmentDetail> SegmentDetailRepository() const override;
    RepositoryOf<Cables::Entities::SegmentDetail> SegmentDetailRepositoryCached() const override;
    void SetSegmentDetailRepository(const RepositoryOf<Cables::Entities::SegmentDetail>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Segment> SegmentRepository() const override;
    RepositoryOf<Cables::Entities::Segment> SegmentRepositoryCached() const override;
    void SetSegmentRepository(const RepositoryOf<Cables::Entities::Segment>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::SegmentType> SegmentTypeRepository() const override;
    RepositoryOf<Cables::Entities::SegmentType> SegmentTypeRepositoryCached() const override;
    void SetSegmentTypeRepository(const RepositoryOf<Cables::Entities::SegmentType>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Station> StationRepository() const override;
    RepositoryOf<Cables::Entities::Station> StationRepositoryCached() const override;
    void SetStationRepository(const RepositoryOf<Cables::Entities::Station>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Switchgear> SwitchgearRepository() const override;
    RepositoryOf<Cables::Entities::Switchgear> SwitchgearRepositoryCached() const override;
    void SetSwitchgearRepository(const RepositoryOf<Cables::Entities::Switchgear>& repository);

    /// See IEditorRepositoryManager; setting shares the ownership, before the manager is shared.
    RepositoryOf<Cables::Entities::Termination> TerminationRepository() const override;
    RepositoryOf<Cables::Entities::Termination> TerminationRepositoryCached() const override;
    void SetTerminationRepository(const RepositoryOf<Cables::Entities::Termination>& repository);

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Manager
