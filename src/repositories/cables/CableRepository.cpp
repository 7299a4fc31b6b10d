#include "repositories/cables/CableRepository.h"

#include "entities/cables/Rating.h"

#include <algorithm>
#include <cmath>

namespace DataAccess::Repositories {

using Cables::Entities::Cable;
using Cables::Entities::Rating;
using Interfaces::IDatabase;
using Interfaces::IValueConverter;

namespace {

/// Where the select lists have the columns of the evaluation. Get all has the task as well.
enum EvaluationColumn { MeasureId = 22, ModeId = 26, MeasureDate = 27, TaskId = 29 };

class CableMapping final : public EntityMapping<Cable>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts =
            {QStringLiteral(
                 "SELECT c.id, c.number, c.voltage, c.installationdate, c.diagnosticstate, c.city, c.stationa, c.stationb, c.terminationa, c.terminationb, c.switchgeara, c.switchgearb, c.route, c.owner, c.type, c.cablestate, c.comment, c.length, c.timestamp, c.importance, c.deleted, c.snap, e.mid, f.creationdate, f.serialnumber, f.systemtype, m.modeid, m.measure_date, cm.id, e.tid FROM %1 AS c LEFT JOIN qor_rating AS e ON c.id=e.cid LEFT JOIN measures AS m ON e.measuretime=m.measure_date AND e.modeid=m.modeid LEFT JOIN folders AS f ON f.id=m.folderid LEFT JOIN cablebook_measures AS cm ON m.id = cm.id AND c.id =cm.cableid"),
             QStringLiteral(
                 "SELECT c.id, c.number, c.voltage, c.installationdate, c.diagnosticstate, c.city, c.stationa, c.stationb, c.terminationa, c.terminationb, c.switchgeara, c.switchgearb, c.route, c.owner, c.type, c.cablestate, c.comment, c.length, c.timestamp, c.importance, c.deleted, c.snap, e.mid, f.creationdate, f.serialnumber, f.systemtype, m.modeid, m.measure_date, cm.id FROM %1 AS c LEFT JOIN qor_rating AS e ON c.id=e.cid LEFT JOIN measures AS m ON e.measuretime=m.measure_date AND e.modeid=m.modeid LEFT JOIN folders AS f ON f.id=m.folderid LEFT JOIN cablebook_measures AS cm ON m.id = cm.id AND c.id =cm.cableid WHERE c.id = '%2'"),
             QStringLiteral("INSERT INTO %1(id, number, voltage, installationdate, diagnosticstate, city, stationa, stationb, terminationa, terminationb, switchgeara, switchgearb, route, owner, type, cablestate, comment, length, timestamp, importance, deleted, snap) VALUES (:id, :number, :voltage, :installationdate, :diagnosticstate, :city, :stationa, :stationb, :terminationa, :terminationb, :switchgeara, :switchgearb, :route, :owner, :type, :cablestate, :comment, :length, :timestamp, :importance, :deleted, :snap)"),
             QStringLiteral(
                 R"(UPDATE %1 SET "number" = :number, "voltage" = :voltage, "installationdate" = :installationdate, "diagnosticstate" = :diagnosticstate, "city" = :city, "stationa" = :stationa, "stationb" = :stationb, "terminationa" = :terminationa, "terminationb" = :terminationb, "switchgeara" = :switchgeara, "switchgearb" = :switchgearb, "route" = :route, "owner" = :owner, "type" = :type, "cablestate" = :cablestate, "comment" = :comment, "length" = :length, "timestamp" = :timestamp,  "importance" = :importance, "deleted" = :deleted, "snap" = :snap WHERE id = :id)"),
             {18, 20, 21}};
        return texts;
    }

    QString getAll(IDatabase& db) const override
    {
        return hasEvaluations(db) ? statements().getAll : withoutEvaluations();
    }

    QString getById(IDatabase& db) const override
    {
        return hasEvaluations(db) ? statements().getById : withoutEvaluations() + QStringLiteral(" WHERE c.id = '%2'");
    }

    void read(const IValueConverter& row, const std::shared_ptr<Cable>& entity) const override
    {
        entity->SetNumber(row.toString(1));
        entity->SetVoltage(row.toDouble(2));
        entity->SetInstallationDate(row.toDate(3));
        entity->SetDiagnosticStatus(static_cast<Cables::Entities::Enumerations::DiagnosticStatus>(row.toInt32(4)));
        entity->SetCity(row.toString(5));
        entity->SetStationAId(row.toUuid(6));
        entity->SetStationBId(row.toUuid(7));
        entity->SetTerminationAId(row.toUuid(8));
        entity->SetTerminationBId(row.toUuid(9));
        entity->SetSwitchgearAId(row.toUuid(10));
        entity->SetSwitchgearBId(row.toUuid(11));
        entity->SetRouteId(row.toUuid(12));
        entity->SetOwnerId(row.toUuid(13));
        entity->SetType(static_cast<Cables::Entities::Enumerations::CableType>(row.toInt32(14)));
        entity->SetCableStatus(row.toInt32(15));
        entity->SetComment(row.toString(16));
        entity->SetLength(row.toDouble(17));
        entity->SetImportance(row.toInt32(19));
        readEvaluation(row, *entity);
    }

    void bind(IValueConverter& values, const Cable& entity) const override
    {
        values.bindValue(QStringLiteral(":number"), entity.Number());
        values.bindValue(QStringLiteral(":voltage"), entity.Voltage());
        values.bindValue(QStringLiteral(":installationdate"), entity.InstallationDate());
        values.bindValue(QStringLiteral(":diagnosticstate"), static_cast<int>(entity.DiagnosticStatus()));
        values.bindValue(QStringLiteral(":city"), entity.City());
        values.bindValue(QStringLiteral(":stationa"), entity.StationAId());
        values.bindValue(QStringLiteral(":stationb"), entity.StationBId());
        values.bindValue(QStringLiteral(":terminationa"), entity.TerminationAId());
        values.bindValue(QStringLiteral(":terminationb"), entity.TerminationBId());
        values.bindValue(QStringLiteral(":switchgeara"), entity.SwitchgearAId());
        values.bindValue(QStringLiteral(":switchgearb"), entity.SwitchgearBId());
        values.bindValue(QStringLiteral(":route"), entity.RouteId());
        values.bindValue(QStringLiteral(":owner"), entity.OwnerId());
        values.bindValue(QStringLiteral(":type"), static_cast<int>(entity.Type()));
        values.bindValue(QStringLiteral(":cablestate"), entity.CableStatus());
        values.bindValue(QStringLiteral(":comment"), entity.Comment());
        values.bindValue(QStringLiteral(":length"), entity.Length());
        values.bindValue(QStringLiteral(":importance"), entity.Importance());
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
    /// The tables beside the cables that the full statements join. Those of the cable book are not of our making.
    static bool hasEvaluations(IDatabase& db)
    {
        const QStringList tables = db.Tables();
        const QStringList joined = {QStringLiteral("qor_rating"), QStringLiteral("measures"), QStringLiteral("folders"),
                                    QStringLiteral("cablebook_measures")};
        return std::all_of(joined.begin(), joined.end(), [&](const QString& table) { return tables.contains(table); });
    }

    static QString withoutEvaluations()
    {
        return QStringLiteral(
            "SELECT c.id, c.number, c.voltage, c.installationdate, c.diagnosticstate, c.city, c.stationa, c.stationb, c.terminationa, c.terminationb, c.switchgeara, c.switchgearb, c.route, c.owner, c.type, c.cablestate, c.comment, c.length, c.timestamp, c.importance, c.deleted, c.snap, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL FROM %1 AS c");
    }

    static void readEvaluation(const IValueConverter& row, Cable& cable)
    {
        // What there is of a NULL depends on the backend, but for a NULL number it is NaN everywhere.
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
