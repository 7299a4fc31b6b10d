#include "repositories/cables/SegmentRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Segment;

namespace {

class SegmentMapping final : public EntityMapping<Segment>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral(
                "SELECT id, name, indexnumber, length, phase, detail, timestamp, deleted, snap, installationdate FROM %1"),
            QStringLiteral(
                "SELECT  id, name,  indexnumber, length, phase, detail, timestamp, deleted, snap, installationdate FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, name, indexnumber, length, phase, point, detail, installationdate, snap, deleted, timestamp) VALUES (:id, :name, :indexnumber, :length, :phase, NUll, :detail, :installationdate, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE %1 SET "name" = :name, "indexnumber" = :indexnumber, "length" = :length, "phase" = :phase, "detail" = :detail, "installationdate"=:installationdate, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {6, 7, 8}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Segment>& entity) const override
    {
        entity->SetName(row.toString(1));
        entity->SetIndex(row.toUint(2));
        entity->SetLength(row.toDouble(3));
        entity->SetPhaseId(row.toUuid(4));
        entity->SetDetailId(row.toUuid(5));
        entity->SetInstallationDate(row.toDate(9));
    }

    void bind(Interfaces::IValueConverter& values, const Segment& entity) const override
    {
        values.bindValue(QStringLiteral(":name"), entity.Name());
        bindIndex(values, QStringLiteral(":indexnumber"), entity.Index());
        values.bindValue(QStringLiteral(":length"), entity.Length());
        values.bindValue(QStringLiteral(":phase"), entity.PhaseId());
        values.bindValue(QStringLiteral(":detail"), entity.DetailId());
        values.bindValue(QStringLiteral(":installationdate"), entity.InstallationDate());
    }
};

} // namespace

SegmentRepository::SegmentRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                     QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_segment"), strategy, manager, std::make_shared<SegmentMapping>(),
                       parent)
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

template class EntityRepository<Cables::Entities::Segment>;

} // namespace DataAccess::Repositories
