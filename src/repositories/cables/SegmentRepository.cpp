#include "repositories/cables/SegmentRepository.h"

#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

namespace DataAccess::Repositories {

using Cables::Entities::Segment;

namespace {

struct SegmentTable : EntityTable
{
    using Entity = Segment;
    static constexpr char getAll[] =
        "SELECT id, name, indexnumber, length, phase, detail, timestamp, deleted, snap, installationdate FROM %1";
    static constexpr char getById[] =
        "SELECT  id, name,  indexnumber, length, phase, detail, timestamp, deleted, snap, installationdate FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, name, indexnumber, length, phase, point, detail, installationdate, snap, deleted, timestamp) VALUES (:id, :name, :indexnumber, :length, :phase, NUll, :detail, :installationdate, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "name" = :name, "indexnumber" = :indexnumber, "length" = :length, "phase" = :phase, "detail" = :detail, "installationdate"=:installationdate, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {
        column<&Segment::Name>("name"),       column<&Segment::Index, LimitedIndexForm>("indexnumber"),
        column<&Segment::Length>("length"),   column<&Segment::PhaseId>("phase"),
        column<&Segment::DetailId>("detail"), column<&Segment::InstallationDate>("installationdate")};
};

} // namespace

SegmentRepository::SegmentRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                     QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_segment"), strategy, manager,
                       std::make_shared<TableMapping<SegmentTable>>(), parent)
{}

SegmentRepository::~SegmentRepository() = default;

Database::Task<SegmentRepository::Entities>* SegmentRepository::GetByPhaseIdAsync(QUuid id)
{
    return getRowsById(
        QStringLiteral(
            "SELECT  id, name,  indexnumber, length, phase, detail, timestamp, deleted, snap, installationdate FROM %1 WHERE phase = '%2'"),
        id, Q_FUNC_INFO);
}

SegmentRepository::Entities SegmentRepository::GetByPhaseId(QUuid id)
{
    return wait(GetByPhaseIdAsync(id));
}

SegmentRepositoryCached::SegmentRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Segment>>& repository)
    : RepositoryCache(repository)
{}

SegmentRepositoryCached::~SegmentRepositoryCached() = default;

SegmentRepositoryCached::Entities SegmentRepositoryCached::GetByPhaseId(QUuid id)
{
    const auto matches = [&id](const Segment& segment) { return segment.PhaseId() == id; };
    const auto query = [&id](SegmentRepository& segments) { return segments.GetByPhaseId(id); };
    return searchOrAsk<SegmentRepository>(matches, query, Q_FUNC_INFO);
}

template class EntityRepository<Cables::Entities::Segment>;

} // namespace DataAccess::Repositories
