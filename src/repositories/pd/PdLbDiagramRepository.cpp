#include "repositories/pd/PdLbDiagramRepository.h"

namespace DataAccess::Repositories {

using PD::Entities::PdLbDiagram;

namespace {

class PdLbDiagramMapping final : public EntityMapping<PdLbDiagram>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral(
                "SELECT id, report_id, phase1visible, phase2visible, phase3visible, filterclass, filtervoltagemin, filtervoltagemax, snap, deleted, timestamp FROM %1"),
            QStringLiteral(
                "SELECT id, report_id, phase1visible, phase2visible, phase3visible, filterclass, filtervoltagemin, filtervoltagemax, snap, deleted, timestamp FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1 (id, report_id, phase1visible, phase2visible, phase3visible, filterclass, filtervoltagemin, filtervoltagemax, snap, deleted, timestamp) VALUES (:id, :report_id, :phase1visible, :phase2visible, :phase3visible, :filterclass, :filtervoltagemin, :filtervoltagemax, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                "UPDATE %1 SET report_id = :report_id, phase1visible = :phase1visible, phase2visible = :phase2visible, phase3visible = :phase3visible, filterclass = :filterclass, filtervoltagemin = :filtervoltagemin, filtervoltagemax = :filtervoltagemax, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id"),
            {10, 9, 8}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<PdLbDiagram>& entity) const override
    {
        entity->setReportId(row.toUuid(1));
        entity->setPhase1Visible(row.toBool(2));
        entity->setPhase2Visible(row.toBool(3));
        entity->setPhase3Visible(row.toBool(4));
        entity->setFilterClass(static_cast<unsigned int>(row.toInt64(5)));
        entity->setFilterVoltageMin(row.toDouble(6));
        entity->setFilterVoltageMax(row.toDouble(7));
    }

    void bind(Interfaces::IValueConverter& values, const PdLbDiagram& entity) const override
    {
        values.bindValue(QStringLiteral(":report_id"), entity.reportId());
        values.bindValue(QStringLiteral(":phase1visible"), entity.phase1Visible());
        values.bindValue(QStringLiteral(":phase2visible"), entity.phase2Visible());
        values.bindValue(QStringLiteral(":phase3visible"), entity.phase3Visible());
        // The column has a sign: a set of classes with the highest bit is stored as a negative number.
        values.bindValue(QStringLiteral(":filterclass"), static_cast<int>(entity.filterClass()));
        values.bindValue(QStringLiteral(":filtervoltagemin"), entity.filterVoltageMin());
        values.bindValue(QStringLiteral(":filtervoltagemax"), entity.filterVoltageMax());
    }
};

} // namespace

PdLbDiagramRepository::PdLbDiagramRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                             QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_lbdiagram"), strategy, manager,
                       std::make_shared<PdLbDiagramMapping>(), parent)
{}

PdLbDiagramRepository::~PdLbDiagramRepository() = default;

template class EntityRepository<PD::Entities::PdLbDiagram>;

} // namespace DataAccess::Repositories
