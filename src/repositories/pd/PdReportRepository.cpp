#include "repositories/pd/PdReportRepository.h"

#include "database/GenericDml.h"
#include "database/private/StatementError.h"
#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

namespace DataAccess::Repositories {

using Interfaces::IDatabase;
using Interfaces::IValueConverter;
using PD::Entities::PdReport;

namespace {

using Filter = QHash<QString, QString>;

/// The connection's query, with @p statement prepared and @p reportId bound to @p placeholder. Throws
/// ExecutionException with the driver's text.
QSqlQuery& prepare(IDatabase& db, const QString& statement, const QString& placeholder, const QUuid& reportId)
{
    QSqlQuery& query = db.Query();
    if (!query.prepare(statement))
        throw Database::failureOf(query);
    db.Converter(query)->bindValue(placeholder, reportId);
    return query;
}

/// Calls @p visit with each row of @p query.
template <typename Visitor>
void forEachRow(IDatabase& db, QSqlQuery& query, const Visitor& visit)
{
    const auto row = db.Converter(query);
    while (query.next())
        visit(*row);
    if (query.lastError().isValid())
        throw Database::failureOf(query);
}

Filter filterOf(IDatabase& db, const QUuid& reportId)
{
    QSqlQuery& query = prepare(db, QStringLiteral("SELECT key, value FROM pd_filter WHERE reportid = :id"),
                               QStringLiteral(":id"), reportId);
    query.setForwardOnly(true);
    db.Exec(query);
    Filter filter;
    forEachRow(db, query, [&](const IValueConverter& row) { filter.insert(row.toString(0), row.toString(1)); });
    return filter;
}

QHash<QUuid, Filter> allFilters(IDatabase& db)
{
    QSqlQuery query = db.Exec(QStringLiteral("SELECT reportid, key, value FROM pd_filter"));
    QHash<QUuid, Filter> filters;
    forEachRow(db, query,
               [&](const IValueConverter& row) { filters[row.toUuid(0)].insert(row.toString(1), row.toString(2)); });
    return filters;
}

void deleteFilter(IDatabase& db, const QUuid& reportId)
{
    db.Exec(prepare(db, QStringLiteral("DELETE FROM pd_filter WHERE reportid = :reportId"), QStringLiteral(":reportId"),
                    reportId));
}

void insertFilter(IDatabase& db, const QUuid& reportId, const Filter& filter)
{
    if (filter.isEmpty())
        return;
    QSqlQuery& query =
        prepare(db, QStringLiteral("INSERT INTO pd_filter (reportid, key, value) VALUES (:reportId, :key, :value)"),
                QStringLiteral(":reportId"), reportId);
    const auto values = db.Converter(query);
    for (auto setting = filter.begin(); setting != filter.end(); ++setting) {
        values->bindValue(QStringLiteral(":key"), setting.key());
        values->bindValue(QStringLiteral(":value"), setting.value());
        db.Exec(query);
    }
}

struct PdReportTable : EntityTable
{
    using Entity = PdReport;
    static constexpr char getAll[] =
        "SELECT id, task, creationtimestamp, flags, recommentation, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] =
        "SELECT id, task, creationtimestamp, flags, recommentation, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, task, creationtimestamp, flags, recommentation, snap, deleted, timestamp) VALUES (:id, :task, :creationtimestamp, :flags, :recommentation, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "task" = :task, "creationtimestamp" = :creationtimestamp, "flags" = :flags, "recommentation" = :recommentation, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    /// Its table is pd_filter.
    using Elsewhere = Getters<&PdReport::Filter>;
    static constexpr std::tuple columns = {
        column<&PdReport::TaskId>("task"), column<&PdReport::CreationTimestamp>("creationtimestamp"),
        column<&PdReport::Flags>("flags"), column<&PdReport::Recommentation>("recommentation")};
};

class PdReportMapping final : public TableMapping<PdReportTable>
{
public:
    void readMore(IDatabase& db, const std::vector<std::shared_ptr<PdReport>>& entities) const override
    {
        if (entities.size() == 1) {
            setFilter(*entities.front(), filterOf(db, entities.front()->Id()));
        } else if (!entities.empty()) {
            const QHash<QUuid, Filter> filters = allFilters(db);
            for (const std::shared_ptr<PdReport>& report : entities)
                setFilter(*report, filters.value(report->Id()));
        }
    }

    bool usesConnection() const override { return true; }

    void writeMore(IDatabase& db, Write kind, const PdReport& entity) const override
    {
        if (kind == Write::Update)
            deleteFilter(db, entity.Id());
        insertFilter(db, entity.Id(), entity.Filter());
    }

private:
    static void setFilter(PdReport& report, const Filter& filter)
    {
        const auto state = report.EntityState();
        report.SetFilter(filter);
        report.SetEntityState(state);
    }
};

} // namespace

PdReportRepository::PdReportRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                       const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                       QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_report"), strategy, manager, std::make_shared<PdReportMapping>(),
                       parent)
{}

PdReportRepository::~PdReportRepository() = default;

Database::Task<bool>* PdReportRepository::RemoveAsync(EntityList entities)
{
    const auto operation = [table = table()](IDatabase& db, QOR::Entities::Entity* report) {
        if (!Database::GenericDml::removeFromTable(db, report, table))
            return false;
        deleteFilter(db, report->Id());
        return true;
    };
    return forEachRow(EntityVector(entities.begin(), entities.end()), operation, Q_FUNC_INFO);
}

template class EntityRepository<PD::Entities::PdReport>;

} // namespace DataAccess::Repositories
