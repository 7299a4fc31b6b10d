#include "repositories/pd/PdTaskInfoRepository.h"

#include <utility>

namespace DataAccess::Repositories {

using Interfaces::IValueConverter;
using PD::Entities::PdTaskInfo;

namespace {

class PdTaskInfoMapping final : public EntityMapping<PdTaskInfo>
{
public:
    explicit PdTaskInfoMapping(Statements texts)
        : m_texts(std::move(texts))
    {}

    const Statements& statements() const override { return m_texts; }

    void read(const IValueConverter& row, const std::shared_ptr<PdTaskInfo>& entity) const override
    {
        entity->setReportId(row.toUuid(1));
        entity->setSoftwareVersion(row.toString(2));
        entity->setSystemType(row.toString(3));
        entity->setSerialNumber(row.toString(4));
        entity->setCalibrationDate(calibrationDate(row, 5));
    }

    void bind(IValueConverter& values, const PdTaskInfo& entity) const override
    {
        values.bindValue(QStringLiteral(":report_id"), entity.reportId());
        values.bindValue(QStringLiteral(":pd_version"), entity.softwareVersion());
        values.bindValue(QStringLiteral(":system_type"), entity.systemType());
        values.bindValue(QStringLiteral(":serial_number"), entity.serialNumber());
        // Stored without a time zone and read as local time, and so written as local time too.
        values.bindValue(QStringLiteral(":calibration_date"), entity.calibrationDate().toLocalTime());
    }

private:
    /// The column is a text: whatever the backend's own form of a time is, one in ISO form or a mere date reads too.
    static QDateTime calibrationDate(const IValueConverter& row, int column)
    {
        const QDateTime time = row.toDateTime(column);
        return time.date().isValid() ? time : QDateTime::fromString(row.toString(column), Qt::ISODate);
    }

    Statements m_texts;
};

} // namespace

const QString PdTaskInfoRepository::s_tableName = QStringLiteral("pd_task_info");
const QString PdTaskInfoRepository::s_getAllQueryString = QStringLiteral(
    "SELECT id, report_id, pd_version, system_type, serial_number, calibration_date, snap, deleted, timestamp FROM %1");
const QString PdTaskInfoRepository::s_getAllByIdQueryString = QStringLiteral(
    "SELECT id, report_id, pd_version, system_type, serial_number, calibration_date, snap, deleted, timestamp FROM %1 WHERE id = '%2'");
const QString PdTaskInfoRepository::s_insertQueryString = QStringLiteral(
    "INSERT INTO %1 (id, report_id, pd_version, system_type, serial_number, calibration_date, snap, deleted, timestamp) VALUES (:id, :report_id, :pd_version, :system_type, :serial_number, :calibration_date, :snap, :deleted, :timestamp)");
const QString PdTaskInfoRepository::s_updateQueryString = QStringLiteral(
    "UPDATE %1 SET report_id = :report_id, pd_version = :pd_version, system_type = :system_type, serial_number = :serial_number, calibration_date = :calibration_date, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id");

PdTaskInfoRepository::PdTaskInfoRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(
          worker, s_tableName, strategy, manager,
          std::make_shared<PdTaskInfoMapping>(Statements{
              s_getAllQueryString, s_getAllByIdQueryString, s_insertQueryString, s_updateQueryString, {8, 7, 6}}),
          parent)
{}

PdTaskInfoRepository::~PdTaskInfoRepository() = default;

template class EntityRepository<PD::Entities::PdTaskInfo>;

} // namespace DataAccess::Repositories
