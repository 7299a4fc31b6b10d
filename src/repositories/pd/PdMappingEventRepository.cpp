#include "repositories/pd/PdMappingEventRepository.h"

namespace DataAccess::Repositories {

using PD::Entities::PdMappingEvent;

namespace {

class PdMappingEventMapping final : public EntityMapping<PdMappingEvent>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral(
                "SELECT id, report_id, load, phase, class, polarity, voltage, position, mode, snap, deleted, timestamp FROM %1"),
            QStringLiteral(
                "SELECT id, report_id, load, phase, class, polarity, voltage, position, mode, snap, deleted, timestamp FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1 (id, report_id, load, phase, class, polarity, voltage, position, mode, snap, deleted, timestamp) VALUES (:id, :report_id, :load, :phase, :class, :polarity, :voltage, :position, :mode, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                "UPDATE %1 SET report_id = :report_id, load = :load, phase = :phase, class = :class, polarity = :polarity, voltage = :voltage, position = :position, mode = :mode, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id"),
            {11, 10, 9}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<PdMappingEvent>& entity) const override
    {
        entity->setReportId(row.toUuid(1));
        entity->setLoad(row.toDouble(2));
        entity->setPhaseIndex(row.toInt32(3));
        entity->setClassification(row.toInt32(4));
        entity->setPolarity(row.toBool(5));
        entity->setVoltage(row.toDouble(6));
        entity->setPosition(row.toDouble(7));
        entity->setMode(row.toInt32(8));
    }

    void bind(Interfaces::IValueConverter& values, const PdMappingEvent& entity) const override
    {
        values.bindValue(QStringLiteral(":report_id"), entity.reportId());
        values.bindValue(QStringLiteral(":load"), entity.load());
        values.bindValue(QStringLiteral(":phase"), entity.phaseIndex());
        values.bindValue(QStringLiteral(":class"), entity.classification());
        values.bindValue(QStringLiteral(":polarity"), entity.polarity());
        values.bindValue(QStringLiteral(":voltage"), entity.voltage());
        values.bindValue(QStringLiteral(":position"), entity.position());
        values.bindValue(QStringLiteral(":mode"), entity.mode());
    }
};

} // namespace

PdMappingEventRepository::PdMappingEventRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                                   const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                                   QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_mapping_event"), strategy, manager,
                       std::make_shared<PdMappingEventMapping>(), parent)
{}

PdMappingEventRepository::~PdMappingEventRepository() = default;

template class EntityRepository<PD::Entities::PdMappingEvent>;

} // namespace DataAccess::Repositories
