#pragma once

#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/PdTaskInfo.h"
#include "repositories/EntityRepository.h"

/// The repositories of the partial-discharge data that have no operations of their own.
namespace DataAccess::Repositories {

/// The partial-discharge tests; table `pd_task`.
class DATAACCESS_EXPORT PdTaskRepository : public EntityRepository<PD::Entities::PdTask>
{
    Q_OBJECT

public:
    PdTaskRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdTaskRepository() override;
};

/// The results of the phases of reports; table `pd_iec_overview`.
class DATAACCESS_EXPORT PdIecOverviewRepository : public EntityRepository<PD::Entities::PdIecOverview>
{
    Q_OBJECT

public:
    PdIecOverviewRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                            const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                            QObject* parent = nullptr);
    ~PdIecOverviewRepository() override;
};

/// The discharges that were located; table `pd_mapping_event`.
class DATAACCESS_EXPORT PdMappingEventRepository : public EntityRepository<PD::Entities::PdMappingEvent>
{
    Q_OBJECT

public:
    PdMappingEventRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                             const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                             QObject* parent = nullptr);
    ~PdMappingEventRepository() override;
};

/// The settings of the diagrams of reports; table `pd_lbdiagram`.
class DATAACCESS_EXPORT PdLbDiagramRepository : public EntityRepository<PD::Entities::PdLbDiagram>
{
    Q_OBJECT

public:
    PdLbDiagramRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                          const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                          QObject* parent = nullptr);
    ~PdLbDiagramRepository() override;
};

/// What was measured for reports; table `pd_summary`. The odd spelling of the name is the one that callers use.
class DATAACCESS_EXPORT PdSummaryReporsitory : public EntityRepository<PD::Entities::PdSummary>
{
    Q_OBJECT

public:
    PdSummaryReporsitory(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdSummaryReporsitory() override;
};

/// What the tasks of reports were measured with; table `pd_task_info`.
class DATAACCESS_EXPORT PdTaskInfoRepository : public EntityRepository<PD::Entities::PdTaskInfo>
{
    Q_OBJECT

public:
    PdTaskInfoRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdTaskInfoRepository() override;

    /// The texts of the table. The other repositories have theirs in the source file.
    static constexpr char s_tableName[] = "pd_task_info";
    static constexpr char s_getAllQueryString[] =
        "SELECT id, report_id, pd_version, system_type, serial_number, calibration_date, snap, deleted, timestamp FROM %1";
    static constexpr char s_getAllByIdQueryString[] =
        "SELECT id, report_id, pd_version, system_type, serial_number, calibration_date, snap, deleted, timestamp FROM %1 WHERE id = '%2'";
    static constexpr char s_insertQueryString[] =
        "INSERT INTO %1 (id, report_id, pd_version, system_type, serial_number, calibration_date, snap, deleted, timestamp) VALUES (:id, :report_id, :pd_version, :system_type, :serial_number, :calibration_date, :snap, :deleted, :timestamp)";
    static constexpr char s_updateQueryString[] =
        "UPDATE %1 SET report_id = :report_id, pd_version = :pd_version, system_type = :system_type, serial_number = :serial_number, calibration_date = :calibration_date, snap = :snap, deleted = :deleted, timestamp = :timestamp WHERE id = :id";
};

} // namespace DataAccess::Repositories
