#include "repositories/cables/CableRepository.h"

#include "entities/cables/Rating.h"
#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

#include <algorithm>
#include <cmath>

namespace DataAccess::Repositories {

using Cables::Entities::Cable;
using Cables::Entities::Rating;
using Interfaces::IDatabase;
using Interfaces::IValueConverter;

namespace {

struct CableTable : EntityTable
{
    using Entity = Cable;
    static constexpr char getAll[] =
        "SELECT c.id, c.number, c.voltage, c.installationdate, c.diagnosticstate, c.city, c.stationa, c.stationb, c.terminationa, c.terminationb, c.switchgeara, c.switchgearb, c.route, c.owner, c.type, c.cablestate, c.comment, c.length, c.timestamp, c.importance, c.deleted, c.snap, e.mid, f.creationdate, f.serialnumber, f.systemtype, m.modeid, m.measure_date, cm.id, e.tid FROM %1 AS c LEFT JOIN qor_rating AS e ON c.id=e.cid LEFT JOIN measures AS m ON e.measuretime=m.measure_date AND e.modeid=m.modeid LEFT JOIN folders AS f ON f.id=m.folderid LEFT JOIN cablebook_measures AS cm ON m.id = cm.id AND c.id =cm.cableid";
    static constexpr char getById[] =
        "SELECT c.id, c.number, c.voltage, c.installationdate, c.diagnosticstate, c.city, c.stationa, c.stationb, c.terminationa, c.terminationb, c.switchgeara, c.switchgearb, c.route, c.owner, c.type, c.cablestate, c.comment, c.length, c.timestamp, c.importance, c.deleted, c.snap, e.mid, f.creationdate, f.serialnumber, f.systemtype, m.modeid, m.measure_date, cm.id FROM %1 AS c LEFT JOIN qor_rating AS e ON c.id=e.cid LEFT JOIN measures AS m ON e.measuretime=m.measure_date AND e.modeid=m.modeid LEFT JOIN folders AS f ON f.id=m.folderid LEFT JOIN cablebook_measures AS cm ON m.id = cm.id AND c.id =cm.cableid WHERE c.id = '%2'";
    /// In place of both SELECTs in a database without the tables of the cable book.
    static constexpr char withoutEvaluations[] =
        "SELECT c.id, c.number, c.voltage, c.installationdate, c.diagnosticstate, c.city, c.stationa, c.stationb, c.terminationa, c.terminationb, c.switchgeara, c.switchgearb, c.route, c.owner, c.type, c.cablestate, c.comment, c.length, c.timestamp, c.importance, c.deleted, c.snap, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL FROM %1 AS c";
    static constexpr char insert[] =
        "INSERT INTO %1(id, number, voltage, installationdate, diagnosticstate, city, stationa, stationb, terminationa, terminationb, switchgeara, switchgearb, route, owner, type, cablestate, comment, length, timestamp, importance, deleted, snap) VALUES (:id, :number, :voltage, :installationdate, :diagnosticstate, :city, :stationa, :stationb, :terminationa, :terminationb, :switchgeara, :switchgearb, :route, :owner, :type, :cablestate, :comment, :length, :timestamp, :importance, :deleted, :snap)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "number" = :number, "voltage" = :voltage, "installationdate" = :installationdate, "diagnosticstate" = :diagnosticstate, "city" = :city, "stationa" = :stationa, "stationb" = :stationb, "terminationa" = :terminationa, "terminationb" = :terminationb, "switchgeara" = :switchgeara, "switchgearb" = :switchgearb, "route" = :route, "owner" = :owner, "type" = :type, "cablestate" = :cablestate, "comment" = :comment, "length" = :length, "timestamp" = :timestamp,  "importance" = :importance, "deleted" = :deleted, "snap" = :snap WHERE id = :id)";
    static constexpr std::tuple columns = {column<&Cable::Number>("number"),
                                           column<&Cable::Voltage>("voltage"),
                                           column<&Cable::InstallationDate>("installationdate"),
                                           column<&Cable::DiagnosticStatus>("diagnosticstate"),
                                           column<&Cable::City>("city"),
                                           column<&Cable::StationAId>("stationa"),
                                           column<&Cable::StationBId>("stationb"),
                                           column<&Cable::TerminationAId>("terminationa"),
                                           column<&Cable::TerminationBId>("terminationb"),
                                           column<&Cable::SwitchgearAId>("switchgeara"),
                                           column<&Cable::SwitchgearBId>("switchgearb"),
                                           column<&Cable::RouteId>("route"),
                                           column<&Cable::OwnerId>("owner"),
                                           column<&Cable::Type>("type"),
                                           column<&Cable::CableStatus>("cablestate"),
                                           column<&Cable::Comment>("comment"),
                                           column<&Cable::Length>("length"),
                                           column<&Cable::Importance>("importance")};
};

static_assert(hasAllColumns<CableTable>(CableTable::withoutEvaluations));

/// Where the SELECTs have the columns of the evaluation. Get all has the task as well.
enum EvaluationColumn {
    MeasureId = StatementText::positionOf(CableTable::getAll, "e.mid"),
    ModeId = StatementText::positionOf(CableTable::getAll, "m.modeid"),
    MeasureDate = StatementText::positionOf(CableTable::getAll, "m.measure_date"),
    TaskId = StatementText::positionOf(CableTable::getAll, "e.tid")
};

class CableMapping final : public TableMapping<CableTable>
{
public:
    QString getAll(IDatabase& db) const override
    {
        return hasEvaluations(db) ? statements().getAll : QString::fromLatin1(CableTable::withoutEvaluations);
    }

    QString getById(IDatabase& db) const override
    {
        return hasEvaluations(db)
                   ? statements().getById
                   : QLatin1String(CableTable::withoutEvaluations) + QStringLiteral(" WHERE c.id = '%2'");
    }

    void read(const IValueConverter& row, const std::shared_ptr<Cable>& entity) const override
    {
        TableMapping::read(row, entity);
        readEvaluation(row, *entity);
    }

    bool supersedes(const Cable& later, const Cable& earlier) const override
    {
        const auto evaluated = later.Rating();
        const auto present = earlier.Rating();
        if (!evaluated || !present)
            return evaluated != nullptr;
        if (evaluated->measureTime() != present->measureTime())
            return !present->measureTime().isValid() || evaluated->measureTime() > present->measureTime();
        return evaluated->measureID() > present->measureID();
    }

private:
    /// Whether all tables that the full statements join are there. The suite's cable book makes its own.
    static bool hasEvaluations(IDatabase& db)
    {
        const QStringList tables = db.Tables();
        const QStringList joined = {QStringLiteral("qor_rating"), QStringLiteral("measures"), QStringLiteral("folders"),
                                    QStringLiteral("cablebook_measures")};
        return std::all_of(joined.begin(), joined.end(), [&](const QString& table) { return tables.contains(table); });
    }

    static void readEvaluation(const IValueConverter& row, Cable& cable)
    {
        // What a NULL converts to depends on the backend, except that a NULL number is NaN everywhere.
        const bool hasMeasure = !std::isnan(row.toDouble(MeasureId));
        const bool hasTask = row.columnCount() > TaskId;
        const QUuid task = hasTask ? row.toUuid(TaskId) : QUuid();
        if (!hasMeasure && task.isNull())
            return;
        auto rating = std::make_shared<Rating>();
        rating->SetCableID(cable.Id());
        rating->SetTaskID(task);
        rating->SetMeasureID(row.toInt32(MeasureId));
        rating->SetModeId(row.toInt32(ModeId));
        rating->SetMeasureTime(row.toDateTime(MeasureDate));
        if (hasMeasure)
            cable.SetRatingMeasureID(row.toString(MeasureId));
        cable.SetRating(std::move(rating));
    }
};

} // namespace

CableRepository::CableRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_cable"), strategy, manager, std::make_shared<CableMapping>(), parent)
{}

CableRepository::~CableRepository() = default;

template class EntityRepository<Cables::Entities::Cable>;

} // namespace DataAccess::Repositories
