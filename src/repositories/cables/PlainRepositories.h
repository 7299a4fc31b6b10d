#pragma once

#include "entities/cables/Insulation.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Route.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "entities/cables/Switchgear.h"
#include "entities/cables/Termination.h"
#include "repositories/EntityRepository.h"

/// The repositories of the cable network that have no operations of their own.
namespace DataAccess::Repositories {

/// The insulation materials; table `ce_insulation`.
class DATAACCESS_EXPORT InsulationRepository : public EntityRepository<Cables::Entities::Insulation>
{
    Q_OBJECT

public:
    InsulationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~InsulationRepository() override;
};

/// The owners of cables; table `ce_owner`.
class DATAACCESS_EXPORT OwnerRepository : public EntityRepository<Cables::Entities::Owner>
{
    Q_OBJECT

public:
    OwnerRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~OwnerRepository() override;
};

/// The routes of cables; table `ce_route`. The ids of a route's points are one text, joined with "#".
class DATAACCESS_EXPORT RouteRepository : public EntityRepository<Cables::Entities::Route>
{
    Q_OBJECT

public:
    RouteRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~RouteRepository() override;
};

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

/// The kinds of switchgear at the ends of cables; table `ce_switchgear`.
class DATAACCESS_EXPORT SwitchgearRepository : public EntityRepository<Cables::Entities::Switchgear>
{
    Q_OBJECT

public:
    SwitchgearRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~SwitchgearRepository() override;
};

/// The kinds of terminations of cables; table `ce_termination`.
class DATAACCESS_EXPORT TerminationRepository : public EntityRepository<Cables::Entities::Termination>
{
    Q_OBJECT

public:
    TerminationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                          const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                          QObject* parent = nullptr);
    ~TerminationRepository() override;
};

} // namespace DataAccess::Repositories
