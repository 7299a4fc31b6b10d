#include "repositories/pd/PdIecOverviewRepository.h"

namespace DataAccess::Repositories {

using PD::Entities::PdIecOverview;

namespace {

class PdIecOverviewMapping final : public EntityMapping<PdIecOverview>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral(
                "SELECT id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp FROM %1"),
            QStringLiteral(
                "SELECT id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1 (id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp) VALUES (:id, :report_id, :phase, :groundnoise, :sensitivity_level, :frequency, :pdivvoltage, :pdevvoltage, :pdivmaxcharge, :pdmaxcharges, :pdmedcharges, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                "UPDATE %1 SET report_id = :report_id, phase = :phase, groundnoise = :groundnoise, sensitivity_level = :sensitivity_level, frequency = :frequency, pdivvoltage = :pdivvoltage, pdevvoltage = :pdevvoltage, pdivmaxcharge = :pdivmaxcharge, pdmaxcharges = :pdmaxcharges, pdmedcharges = :pdmedcharges, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id"),
            {13, 12, 11}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<PdIecOverview>& entity) const override
    {
        entity->setReportId(row.toUuid(1));
        entity->setPhaseIndex(row.toInt32(2));
        entity->setGroundNoise(row.toDouble(3));
        entity->setSensitivityLevel(row.toDouble(4));
        entity->setFrequency(row.toDouble(5));
        entity->setPdivVoltage(row.toDouble(6));
        entity->setPdevVoltage(row.toDouble(7));
        entity->setPdivMaxCharge(row.toDouble(8));
        entity->setMaxCharges(row.toString(9));
        entity->setMedCharges(row.toString(10));
    }

    void bind(Interfaces::IValueConverter& values, const PdIecOverview& entity) const override
    {
        values.bindValue(QStringLiteral(":report_id"), entity.reportId());
        values.bindValue(QStringLiteral(":phase"), entity.phaseIndex());
        values.bindValue(QStringLiteral(":groundnoise"), entity.groundNoise());
        values.bindValue(QStringLiteral(":sensitivity_level"), entity.sensitivityLevel());
        values.bindValue(QStringLiteral(":frequency"), entity.frequency());
        values.bindValue(QStringLiteral(":pdivvoltage"), entity.pdivVoltage());
        values.bindValue(QStringLiteral(":pdevvoltage"), entity.pdevVoltage());
        values.bindValue(QStringLiteral(":pdivmaxcharge"), entity.pdivMaxCharge());
        values.bindValue(QStringLiteral(":pdmaxcharges"), entity.maxChargesText());
        values.bindValue(QStringLiteral(":pdmedcharges"), entity.medChargesText());
    }
};

} // namespace

PdIecOverviewRepository::PdIecOverviewRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                                 QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_iec_overview"), strategy, manager,
                       std::make_shared<PdIecOverviewMapping>(), parent)
{}

PdIecOverviewRepository::~PdIecOverviewRepository() = default;

template class EntityRepository<PD::Entities::PdIecOverview>;

} // namespace DataAccess::Repositories
