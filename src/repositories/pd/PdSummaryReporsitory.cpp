#include "repositories/pd/PdSummaryReporsitory.h"

namespace DataAccess::Repositories {

using PD::Entities::PdSummary;

namespace {

class PdSummaryMapping final : public EntityMapping<PdSummary>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral(
                "SELECT id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin, max_applied_voltage, snap, deleted, timestamp FROM %1"),
            QStringLiteral(
                "SELECT id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin, max_applied_voltage, snap, deleted, timestamp FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1 (id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin, max_applied_voltage, snap, deleted, timestamp) VALUES (:id, :report_id, :pdiv, :pdev, :groundnoise, :data, :vwd, :dac_pos, :dac_neg, :vlf_cr, :vlf_sin, :max_applied_voltage, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                "UPDATE %1 SET report_id = :report_id, pdiv = :pdiv, pdev = :pdev, groundnoise = :groundnoise, data = :data, vwd = :vwd, dac_pos = :dac_pos, dac_neg = :dac_neg, vlf_cr = :vlf_cr, vlf_sin = :vlf_sin, max_applied_voltage = :max_applied_voltage, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id"),
            {14, 13, 12}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<PdSummary>& entity) const override
    {
        entity->setReportId(row.toUuid(1));
        entity->setPdivState(row.toBool(2));
        entity->setPdevState(row.toBool(3));
        entity->setNoiseState(row.toBool(4));
        entity->setDataState(row.toBool(5));
        entity->setVwdState(row.toBool(6));
        entity->setDacPosState(row.toBool(7));
        entity->setDacNegState(row.toBool(8));
        entity->setVlfCrState(row.toBool(9));
        entity->setVlfSinState(row.toBool(10));
        entity->setMaxAppliedVoltage(row.toDouble(11));
    }

    void bind(Interfaces::IValueConverter& values, const PdSummary& entity) const override
    {
        values.bindValue(QStringLiteral(":report_id"), entity.reportId());
        values.bindValue(QStringLiteral(":pdiv"), entity.pdivState());
        values.bindValue(QStringLiteral(":pdev"), entity.pdevState());
        values.bindValue(QStringLiteral(":groundnoise"), entity.noiseState());
        values.bindValue(QStringLiteral(":data"), entity.dataState());
        values.bindValue(QStringLiteral(":vwd"), entity.vwdState());
        values.bindValue(QStringLiteral(":dac_pos"), entity.dacPosState());
        values.bindValue(QStringLiteral(":dac_neg"), entity.dacNegState());
        values.bindValue(QStringLiteral(":vlf_cr"), entity.vlfCrState());
        values.bindValue(QStringLiteral(":vlf_sin"), entity.vlfSinState());
        values.bindValue(QStringLiteral(":max_applied_voltage"), entity.maxAppliedVoltage());
    }
};

} // namespace

PdSummaryReporsitory::PdSummaryReporsitory(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_summary"), strategy, manager, std::make_shared<PdSummaryMapping>(),
                       parent)
{}

PdSummaryReporsitory::~PdSummaryReporsitory() = default;

template class EntityRepository<PD::Entities::PdSummary>;

} // namespace DataAccess::Repositories
