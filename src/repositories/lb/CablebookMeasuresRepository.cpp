#include "repositories/lb/CablebookMeasuresRepository.h"

#include "database/GenericDml.h"
#include "entities/qor/QorUuidHelpers.h"
#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

#include <limits>
#include <optional>
#include <utility>

namespace DataAccess::Repositories {

using Interfaces::IDatabase;
using Interfaces::IValueConverter;
using LB::Entities::CablebookMeasure;
using QOR::Entities::QorUuidHelpers;

namespace {

/// The number that @p id was made from; none for any other id, for which intFromUuid() gives 0.
std::optional<qint64> numberOf(const QUuid& id)
{
    const qint64 number = QorUuidHelpers::intFromUuid(id);
    return QorUuidHelpers::uuidFromInt(number) == id ? std::make_optional(number) : std::nullopt;
}

/// The key of the row of @p measure. Throws ExecutionException when there is none.
qint64 keyOf(const CablebookMeasure& measure)
{
    if (measure.MeasureId() != 0)
        return measure.MeasureId();
    const std::optional<qint64> number = numberOf(measure.Id());
    if (!number)
        throw Exceptions::ExecutionException("A link without the number of its measurement has no row");
    return *number;
}

struct CablebookMeasureTable : EntityTable
{
    using Entity = CablebookMeasure;
    static constexpr char timestamp[] = "lastedit";
    static constexpr char deleted[] = "deletedate";
    /// In the key, and in the time stamp.
    using Elsewhere = Getters<&CablebookMeasure::MeasureId, &CablebookMeasure::LastEditDate>;
    static constexpr char getAll[] = "SELECT id,cableid,importdate,deletedate,snap,lastedit,stationid FROM %1";
    static constexpr char getById[] =
        "SELECT id,cableid,importdate,deletedate,snap,lastedit,stationid FROM %1 WHERE id = %2";
    static constexpr char insert[] =
        "INSERT INTO %1 (id, cableid, importdate, deletedate, snap, lastedit, stationid) VALUES (:id, :cableid, :importdate, :deletedate, :snap, :lastedit, :stationid)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "cableid" = :cableid, "importdate" = :importdate, "deletedate" = :deletedate, "snap" = :snap, "lastedit" = :lastedit, "stationid" = :stationid WHERE id = :id)";
    static constexpr std::tuple columns = {column<&CablebookMeasure::CableId>("cableid"),
                                           column<&CablebookMeasure::ImportDate>("importdate"),
                                           column<&CablebookMeasure::StationId>("stationid")};
};

class CablebookMeasuresMapping final : public TableMapping<CablebookMeasureTable>
{
public:
    QString idText(const QUuid& id) const override
    {
        const std::optional<qint64> number = numberOf(id);
        return number ? QString::number(*number) : QString();
    }

    QUuid readId(const IValueConverter& row) const override { return QorUuidHelpers::uuidFromInt(row.toInt64(0)); }

    void read(const IValueConverter& row, const std::shared_ptr<CablebookMeasure>& entity) const override
    {
        const qint64 number = row.toInt64(0);
        // The column is wider than the property. The key of a larger number is the id's.
        if (number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max())
            entity->SetMeasureId(static_cast<int>(number));
        TableMapping::read(row, entity);
        entity->SetLastEditDate(row.toUtcDateTime(statements().bookkeeping.timestamp));
    }

    void readBookkeeping(const IValueConverter& row, const Bookkeeping& columns,
                         CablebookMeasure& entity) const override
    {
        using namespace QOR::Entities::Enumerations;
        const bool deleted = !row.toString(columns.deleted).isEmpty();
        entity.SetTimestamp(row.toUtcDateTime(columns.timestamp));
        entity.SetEntityState(row.toBool(columns.snap) ? Snapshot : deleted ? Deleted : Normal);
    }

    void bindBookkeeping(IValueConverter& values, const CablebookMeasure& entity, const QDateTime& now) const override
    {
        using namespace QOR::Entities::Enumerations;
        values.bindValue(QStringLiteral(":id"), keyOf(entity));
        values.bindValue(QStringLiteral(":deletedate"), entity.EntityState() == Deleted ? now : QDateTime());
        values.bindValue(QStringLiteral(":snap"), entity.EntityState() == Snapshot);
        values.bindValue(QStringLiteral(":lastedit"), now);
    }

    void written(const std::shared_ptr<CablebookMeasure>& entity) const override
    {
        entity->SetLastEditDate(entity->Timestamp());
    }
};

} // namespace

CablebookMeasuresRepository::CablebookMeasuresRepository(
    Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("cablebook_measures"), strategy, manager,
                       std::make_shared<CablebookMeasuresMapping>(), parent)
{}

CablebookMeasuresRepository::~CablebookMeasuresRepository() = default;

Database::Task<bool>* CablebookMeasuresRepository::DeleteAsync(EntityList entities)
{
    const QString statement =
        QStringLiteral(R"(UPDATE %1 SET "deletedate" = :deletedate, "lastedit" = :lastedit WHERE id = :id)")
            .arg(table());
    return forEachMeasure(entities, statement, Q_FUNC_INFO, [](IValueConverter& values) {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        values.bindValue(QStringLiteral(":deletedate"), now);
        values.bindValue(QStringLiteral(":lastedit"), now);
    });
}

Database::Task<bool>* CablebookMeasuresRepository::RemoveAsync(EntityList entities)
{
    const QString statement = QStringLiteral("DELETE FROM %1 WHERE id = :id").arg(table());
    return forEachMeasure(entities, statement, Q_FUNC_INFO, [](IValueConverter&) {});
}

Database::Task<bool>* CablebookMeasuresRepository::forEachMeasure(const EntityList& entities, const QString& statement,
                                                                  const char* function,
                                                                  std::function<void(IValueConverter&)> bindMore)
{
    const auto change = [table = table(), statement, function,
                         bindMore = std::move(bindMore)](IDatabase& db, QOR::Entities::Entity* entity) {
        const auto bind = [&](IValueConverter& values) {
            values.bindValue(QStringLiteral(":id"), keyOf(static_cast<const CablebookMeasure&>(*entity)));
            bindMore(values);
        };
        return Database::GenericDml::changeRow(db, entity, table, statement, bind, function);
    };
    return forEachRow(EntityVector(entities.begin(), entities.end()), change, function);
}

template class EntityRepository<LB::Entities::CablebookMeasure>;

} // namespace DataAccess::Repositories
