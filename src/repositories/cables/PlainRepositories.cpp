#include "repositories/cables/PlainRepositories.h"

#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

namespace DataAccess::Repositories {

using Cables::Entities::Insulation;
using Cables::Entities::Owner;
using Cables::Entities::Route;
using Cables::Entities::SegmentDetail;
using Cables::Entities::SegmentType;
using Cables::Entities::Switchgear;
using Cables::Entities::Termination;

namespace {

/// Ids as one text, with a character between them.
struct IdListForm
{
    using Ids = std::vector<QUuid>;
    static constexpr QLatin1Char separator{'#'};

    static Ids read(const Interfaces::IValueConverter& row, int position)
    {
        const QString text = row.toString(position);
        Ids ids;
        if (text.isEmpty())
            return ids;
        const QStringList parts = text.split(separator, Qt::KeepEmptyParts);
        for (const QString& part : parts)
            ids.emplace_back(part);
        return ids;
    }

    static void bind(Interfaces::IValueConverter& values, const QString& placeholder, const Ids& ids)
    {
        QStringList texts;
        for (const QUuid& id : ids)
            texts.append(id.toString());
        // Joining nothing gives a null text, which would be stored as NULL.
        values.bindValue(placeholder, texts.isEmpty() ? QStringLiteral("") : texts.join(separator));
    }
};

struct InsulationTable : EntityTable
{
    using Entity = Insulation;
    static constexpr char getAll[] = "SELECT id, name, velocity, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] = "SELECT  id, name, velocity, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, name, velocity, snap, deleted, timestamp) VALUES (:id, :name, :velocity, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "name" = :name, "velocity" = :velocity, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&Insulation::Name>("name"),
                                           column<&Insulation::Velocity>("velocity")};
};

struct OwnerTable : EntityTable
{
    using Entity = Owner;
    static constexpr char getAll[] = "SELECT id, name, timestamp, deleted, snap FROM ce_owner";
    static constexpr char getById[] = "SELECT id, name, timestamp, deleted, snap FROM ce_owner WHERE id = '%1'";
    static constexpr char insert[] =
        "INSERT INTO ce_owner(id, name, snap, deleted, timestamp) VALUES (:id, :name, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE ce_owner SET "name" = :name, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&Owner::Name>("name")};
};

struct RouteTable : EntityTable
{
    using Entity = Route;
    static constexpr char getAll[] = "SELECT id, cable, points, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] = "SELECT  id, cable, points, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, cable, points, snap, deleted, timestamp) VALUES (:id, :cable, :points, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "cable" = :cable, "points" = :points, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&Route::CableId>("cable"),
                                           column<&Route::PointIds, IdListForm>("points")};
};

struct SegmentDetailTable : EntityTable
{
    using Entity = SegmentDetail;
    static constexpr char getAll[] =
        "SELECT id, name, velocity, insulation, type, favorite, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] =
        "SELECT  id, name,  velocity, insulation, type, favorite, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, name, velocity, insulation, type, favorite, snap, deleted, timestamp) VALUES (:id, :name, :velocity, :insulation, :type, :favorite, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "name" = :name, "velocity" = :velocity, "insulation" = :insulation, "type" = :type, "favorite" = :favorite, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {
        column<&SegmentDetail::Name>("name"), column<&SegmentDetail::Velocity>("velocity"),
        column<&SegmentDetail::InsulationId>("insulation"), column<&SegmentDetail::TypeId>("type"),
        column<&SegmentDetail::IsFavorite>("favorite")};
};

struct SegmentTypeTable : EntityTable
{
    using Entity = SegmentType;
    static constexpr char getAll[] = "SELECT id, name, isjoint, timestamp, deleted, snap FROM ce_segmenttype";
    static constexpr char getById[] =
        "SELECT id, name, isjoint, timestamp, deleted, snap FROM ce_segmenttype WHERE id = '%1'";
    static constexpr char insert[] =
        "INSERT INTO ce_segmenttype(id, name, isjoint, snap, deleted, timestamp) VALUES (:id, :name, :isjoint, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE ce_segmenttype SET "name" = :name, "isjoint" = :isjoint, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&SegmentType::Name>("name"),
                                           column<&SegmentType::IsJoint>("isjoint")};
};

struct SwitchgearTable : EntityTable
{
    using Entity = Switchgear;
    static constexpr char getAll[] = "SELECT id, name, timestamp, deleted, snap FROM ce_switchgear";
    static constexpr char getById[] = "SELECT id, name, timestamp, deleted, snap FROM ce_switchgear WHERE id = '%1'";
    static constexpr char insert[] =
        "INSERT INTO ce_switchgear(id, name, snap, deleted, timestamp) VALUES (:id, :name, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE ce_switchgear SET "name" = :name, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&Switchgear::Name>("name")};
};

struct TerminationTable : EntityTable
{
    using Entity = Termination;
    static constexpr char getAll[] = "SELECT id, name, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] = "SELECT id, name, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, name, snap, deleted, timestamp) VALUES (:id, :name, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "name" = :name, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&Termination::Name>("name")};
};

} // namespace

InsulationRepository::InsulationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_insulation"), strategy, manager,
                       std::make_shared<TableMapping<InsulationTable>>(), parent)
{}

InsulationRepository::~InsulationRepository() = default;

template class EntityRepository<Cables::Entities::Insulation>;

OwnerRepository::OwnerRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_owner"), strategy, manager,
                       std::make_shared<TableMapping<OwnerTable>>(), parent)
{}

OwnerRepository::~OwnerRepository() = default;

template class EntityRepository<Cables::Entities::Owner>;

RouteRepository::RouteRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_route"), strategy, manager,
                       std::make_shared<TableMapping<RouteTable>>(), parent)
{}

RouteRepository::~RouteRepository() = default;

template class EntityRepository<Cables::Entities::Route>;

SegmentDetailRepository::SegmentDetailRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                                 QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_segment_detail"), strategy, manager,
                       std::make_shared<TableMapping<SegmentDetailTable>>(), parent)
{}

SegmentDetailRepository::~SegmentDetailRepository() = default;

template class EntityRepository<Cables::Entities::SegmentDetail>;

SegmentTypeRepository::SegmentTypeRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                             QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_segmenttype"), strategy, manager,
                       std::make_shared<TableMapping<SegmentTypeTable>>(), parent)
{}

SegmentTypeRepository::~SegmentTypeRepository() = default;

template class EntityRepository<Cables::Entities::SegmentType>;

SwitchgearRepository::SwitchgearRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_switchgear"), strategy, manager,
                       std::make_shared<TableMapping<SwitchgearTable>>(), parent)
{}

SwitchgearRepository::~SwitchgearRepository() = default;

template class EntityRepository<Cables::Entities::Switchgear>;

TerminationRepository::TerminationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                             QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_termination"), strategy, manager,
                       std::make_shared<TableMapping<TerminationTable>>(), parent)
{}

TerminationRepository::~TerminationRepository() = default;

template class EntityRepository<Cables::Entities::Termination>;

} // namespace DataAccess::Repositories
