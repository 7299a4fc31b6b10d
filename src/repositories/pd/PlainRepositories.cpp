#include "repositories/pd/PlainRepositories.h"

#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

namespace DataAccess::Repositories {

using PD::Entities::PdIecOverview;
using PD::Entities::PdLbDiagram;
using PD::Entities::PdMappingEvent;
using PD::Entities::PdSummary;
using PD::Entities::PdTask;
using PD::Entities::PdTaskInfo;

namespace {

/// Bits in a column that has a sign: a set with the highest bit is stored as a negative number.
struct BitsForm
{
    static unsigned int read(const Interfaces::IValueConverter& row, int position)
    {
        return static_cast<unsigned int>(row.toInt64(position));
    }

    static void bind(Interfaces::IValueConverter& values, const QString& placeholder, unsigned int bits)
    {
        values.bindValue(placeholder, static_cast<int>(bits));
    }
};

/// The column is a text: whatever the backend's own form of a time is, one in ISO form or a mere date reads too.
struct CalibrationDateForm : PlainForm<QDateTime>
{
    static QDateTime read(const Interfaces::IValueConverter& row, int position)
    {
        const QDateTime time = row.toDateTime(position);
        return time.date().isValid() ? time : QDateTime::fromString(row.toString(position), Qt::ISODate);
    }
};

struct PdTaskTable : EntityTable
{
    using Entity = PdTask;
    static constexpr char getAll[] =
        "SELECT id, cable, creationdate, station, tester, path, comment, devices, kvtrrecommentation, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] =
        "SELECT id, cable, creationdate, station, tester, path, comment, devices, kvtrrecommentation, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, cable, creationdate, station, tester, path, comment, devices, kvtrrecommentation, snap, deleted, timestamp) VALUES (:id, :cable, :creationdate, :station, :tester, :path, :comment, :devices, :kvtrrecommentation, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "cable" = :cable, "creationdate" = :creationdate, "station" = :station, "tester" = :tester, "path" = :path, "comment" = :comment, "devices" = :devices, "kvtrrecommentation" = :kvtrrecommentation, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {
        column<&PdTask::CableId>("cable"),       column<&PdTask::CreationDate>("creationdate"),
        column<&PdTask::StationId>("station"),   column<&PdTask::Tester>("tester"),
        column<&PdTask::Path>("path"),           column<&PdTask::Comment>("comment"),
        column<&PdTask::DevicesText>("devices"), column<&PdTask::KvtrRecommentations>("kvtrrecommentation")};
};

struct PdIecOverviewTable : EntityTable
{
    using Entity = PdIecOverview;
    static constexpr char getAll[] =
        "SELECT id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp FROM %1";
    static constexpr char getById[] =
        "SELECT id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1 (id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp) VALUES (:id, :report_id, :phase, :groundnoise, :sensitivity_level, :frequency, :pdivvoltage, :pdevvoltage, :pdivmaxcharge, :pdmaxcharges, :pdmedcharges, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        "UPDATE %1 SET report_id = :report_id, phase = :phase, groundnoise = :groundnoise, sensitivity_level = :sensitivity_level, frequency = :frequency, pdivvoltage = :pdivvoltage, pdevvoltage = :pdevvoltage, pdivmaxcharge = :pdivmaxcharge, pdmaxcharges = :pdmaxcharges, pdmedcharges = :pdmedcharges, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id";
    static constexpr std::tuple columns = {column<&PdIecOverview::reportId>("report_id"),
                                           column<&PdIecOverview::phaseIndex>("phase"),
                                           column<&PdIecOverview::groundNoise>("groundnoise"),
                                           column<&PdIecOverview::sensitivityLevel>("sensitivity_level"),
                                           column<&PdIecOverview::frequency>("frequency"),
                                           column<&PdIecOverview::pdivVoltage>("pdivvoltage"),
                                           column<&PdIecOverview::pdevVoltage>("pdevvoltage"),
                                           column<&PdIecOverview::pdivMaxCharge>("pdivmaxcharge"),
                                           column<&PdIecOverview::maxChargesText>("pdmaxcharges"),
                                           column<&PdIecOverview::medChargesText>("pdmedcharges")};
};

struct PdMappingEventTable : EntityTable
{
    using Entity = PdMappingEvent;
    static constexpr char getAll[] =
        "SELECT id, report_id, load, phase, class, polarity, voltage, position, mode, snap, deleted, timestamp FROM %1";
    static constexpr char getById[] =
        "SELECT id, report_id, load, phase, class, polarity, voltage, position, mode, snap, deleted, timestamp FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1 (id, report_id, load, phase, class, polarity, voltage, position, mode, snap, deleted, timestamp) VALUES (:id, :report_id, :load, :phase, :class, :polarity, :voltage, :position, :mode, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        "UPDATE %1 SET report_id = :report_id, load = :load, phase = :phase, class = :class, polarity = :polarity, voltage = :voltage, position = :position, mode = :mode, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id";
    static constexpr std::tuple columns = {
        column<&PdMappingEvent::reportId>("report_id"), column<&PdMappingEvent::load>("load"),
        column<&PdMappingEvent::phaseIndex>("phase"),   column<&PdMappingEvent::classification>("class"),
        column<&PdMappingEvent::polarity>("polarity"),  column<&PdMappingEvent::voltage>("voltage"),
        column<&PdMappingEvent::position>("position"),  column<&PdMappingEvent::mode>("mode")};
};

struct PdLbDiagramTable : EntityTable
{
    using Entity = PdLbDiagram;
    static constexpr char getAll[] =
        "SELECT id, report_id, phase1visible, phase2visible, phase3visible, filterclass, filtervoltagemin, filtervoltagemax, snap, deleted, timestamp FROM %1";
    static constexpr char getById[] =
        "SELECT id, report_id, phase1visible, phase2visible, phase3visible, filterclass, filtervoltagemin, filtervoltagemax, snap, deleted, timestamp FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1 (id, report_id, phase1visible, phase2visible, phase3visible, filterclass, filtervoltagemin, filtervoltagemax, snap, deleted, timestamp) VALUES (:id, :report_id, :phase1visible, :phase2visible, :phase3visible, :filterclass, :filtervoltagemin, :filtervoltagemax, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        "UPDATE %1 SET report_id = :report_id, phase1visible = :phase1visible, phase2visible = :phase2visible, phase3visible = :phase3visible, filterclass = :filterclass, filtervoltagemin = :filtervoltagemin, filtervoltagemax = :filtervoltagemax, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id";
    static constexpr std::tuple columns = {column<&PdLbDiagram::reportId>("report_id"),
                                           column<&PdLbDiagram::phase1Visible>("phase1visible"),
                                           column<&PdLbDiagram::phase2Visible>("phase2visible"),
                                           column<&PdLbDiagram::phase3Visible>("phase3visible"),
                                           column<&PdLbDiagram::filterClass, BitsForm>("filterclass"),
                                           column<&PdLbDiagram::filterVoltageMin>("filtervoltagemin"),
                                           column<&PdLbDiagram::filterVoltageMax>("filtervoltagemax")};
};

struct PdSummaryTable : EntityTable
{
    using Entity = PdSummary;
    static constexpr char getAll[] =
        "SELECT id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin, max_applied_voltage, snap, deleted, timestamp FROM %1";
    static constexpr char getById[] =
        "SELECT id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin, max_applied_voltage, snap, deleted, timestamp FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1 (id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin, max_applied_voltage, snap, deleted, timestamp) VALUES (:id, :report_id, :pdiv, :pdev, :groundnoise, :data, :vwd, :dac_pos, :dac_neg, :vlf_cr, :vlf_sin, :max_applied_voltage, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        "UPDATE %1 SET report_id = :report_id, pdiv = :pdiv, pdev = :pdev, groundnoise = :groundnoise, data = :data, vwd = :vwd, dac_pos = :dac_pos, dac_neg = :dac_neg, vlf_cr = :vlf_cr, vlf_sin = :vlf_sin, max_applied_voltage = :max_applied_voltage, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id";
    static constexpr std::tuple columns = {column<&PdSummary::reportId>("report_id"),
                                           column<&PdSummary::pdivState>("pdiv"),
                                           column<&PdSummary::pdevState>("pdev"),
                                           column<&PdSummary::noiseState>("groundnoise"),
                                           column<&PdSummary::dataState>("data"),
                                           column<&PdSummary::vwdState>("vwd"),
                                           column<&PdSummary::dacPosState>("dac_pos"),
                                           column<&PdSummary::dacNegState>("dac_neg"),
                                           column<&PdSummary::vlfCrState>("vlf_cr"),
                                           column<&PdSummary::vlfSinState>("vlf_sin"),
                                           column<&PdSummary::maxAppliedVoltage>("max_applied_voltage")};
};

struct PdTaskInfoTable : EntityTable
{
    using Entity = PdTaskInfo;
    using Texts = PdTaskInfoRepository;
    static constexpr const auto& getAll = Texts::s_getAllQueryString;
    static constexpr const auto& getById = Texts::s_getAllByIdQueryString;
    static constexpr const auto& insert = Texts::s_insertQueryString;
    static constexpr const auto& update = Texts::s_updateQueryString;
    static constexpr std::tuple columns = {
        column<&PdTaskInfo::reportId>("report_id"), column<&PdTaskInfo::softwareVersion>("pd_version"),
        column<&PdTaskInfo::systemType>("system_type"), column<&PdTaskInfo::serialNumber>("serial_number"),
        column<&PdTaskInfo::calibrationDate, CalibrationDateForm>("calibration_date")};
};

} // namespace

PdTaskRepository::PdTaskRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                   const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_task"), strategy, manager,
                       std::make_shared<TableMapping<PdTaskTable>>(), parent)
{}

PdTaskRepository::~PdTaskRepository() = default;

template class EntityRepository<PD::Entities::PdTask>;

PdIecOverviewRepository::PdIecOverviewRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                                 QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_iec_overview"), strategy, manager,
                       std::make_shared<TableMapping<PdIecOverviewTable>>(), parent)
{}

PdIecOverviewRepository::~PdIecOverviewRepository() = default;

template class EntityRepository<PD::Entities::PdIecOverview>;

PdMappingEventRepository::PdMappingEventRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                                   const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                                   QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_mapping_event"), strategy, manager,
                       std::make_shared<TableMapping<PdMappingEventTable>>(), parent)
{}

PdMappingEventRepository::~PdMappingEventRepository() = default;

template class EntityRepository<PD::Entities::PdMappingEvent>;

PdLbDiagramRepository::PdLbDiagramRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                             QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_lbdiagram"), strategy, manager,
                       std::make_shared<TableMapping<PdLbDiagramTable>>(), parent)
{}

PdLbDiagramRepository::~PdLbDiagramRepository() = default;

template class EntityRepository<PD::Entities::PdLbDiagram>;

PdSummaryReporsitory::PdSummaryReporsitory(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_summary"), strategy, manager,
                       std::make_shared<TableMapping<PdSummaryTable>>(), parent)
{}

PdSummaryReporsitory::~PdSummaryReporsitory() = default;

template class EntityRepository<PD::Entities::PdSummary>;

PdTaskInfoRepository::PdTaskInfoRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                           QObject* parent)
    : EntityRepository(worker, QString::fromLatin1(s_tableName), strategy, manager,
                       std::make_shared<TableMapping<PdTaskInfoTable>>(), parent)
{}

PdTaskInfoRepository::~PdTaskInfoRepository() = default;

template class EntityRepository<PD::Entities::PdTaskInfo>;

} // namespace DataAccess::Repositories
