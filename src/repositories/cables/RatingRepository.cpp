#include "repositories/cables/RatingRepository.h"

#include "database/backends/Backend.h"
namespace DataAccess::Repositories {

using Cables::Entities::Rating;
using Interfaces::IDatabase;
using Interfaces::IValueConverter;

namespace {

class RatingMapping final : public EntityMapping<Rating>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral(
                "SELECT id, mid, tid, cid, comment, evaluation, automatic, oldcable, eventselectionmodel, modeid, measuretime, timestamp, snap, deleted FROM %1"),
            QStringLiteral(
                "SELECT id, mid, tid, cid, comment, evaluation, automatic, oldcable, eventselectionmodel, modeid, measuretime, timestamp, snap, deleted FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, mid, tid, cid, comment, evaluation, automatic, oldcable, eventselectionmodel, modeid, measuretime, timestamp, snap, deleted)\n"
                "VALUES (:id, :mid, :tid, :cid, :comment, :evaluation, :automatic, :oldcable, :eventselectionmodel, :modeid, :measuretime, :timestamp, :snap, :deleted)"),
            QStringLiteral(
                "UPDATE %1 SET \"mid\" = :mid, \"tid\" = :tid, \"cid\" = :cid, \"comment\" = :comment, \"evaluation\" = :evaluation, \"automatic\" = :automatic, \"oldcable\" = :oldcable,\n"
                "\"eventselectionmodel\" = :eventselectionmodel, \"modeid\" = :modeid, \"measuretime\" = :measuretime, \"timestamp\" = :timestamp, \"snap\" = :snap, \"deleted\" = :deleted WHERE id = :id"),
            {11, 13, 12}};
        return texts;
    }

    void read(const IValueConverter& row, const std::shared_ptr<Rating>& entity) const override
    {
        entity->SetMeasureID(row.toInt32(1));
        entity->SetTaskID(row.toUuid(2));
        entity->SetCableID(row.toUuid(3));
        entity->SetComment(row.toString(4));
        entity->SetRating(row.toString(5));
        entity->SetAutomatic(static_cast<Rating::Tristate>(row.toInt32(6)));
        entity->SetOldCable(static_cast<Rating::Tristate>(row.toInt32(7)));
        entity->SetEventselectionmodel(static_cast<Rating::EventSelection>(row.toInt32(8)));
        entity->SetModeId(row.toInt32(9));
        entity->SetMeasureTime(row.toDateTime(10));
    }

    void bind(IValueConverter& values, const Rating& entity) const override
    {
        values.bindValue(QStringLiteral(":mid"), entity.measureID());
        values.bindValue(QStringLiteral(":tid"), entity.taskID());
        values.bindValue(QStringLiteral(":cid"), entity.cableID());
        values.bindValue(QStringLiteral(":comment"), entity.comment());
        values.bindValue(QStringLiteral(":evaluation"), entity.JsonFromRating());
        values.bindValue(QStringLiteral(":automatic"), static_cast<int>(entity.automatic()));
        values.bindValue(QStringLiteral(":oldcable"), static_cast<int>(entity.oldCable()));
        values.bindValue(QStringLiteral(":eventselectionmodel"), static_cast<int>(entity.eventselectionmodel()));
        values.bindValue(QStringLiteral(":modeid"), entity.modeId());
        // Stored without a time zone and read as local time, and so written as local time too.
        values.bindValue(QStringLiteral(":measuretime"), entity.measureTime().toLocalTime());
    }

    /// On SQLite times are texts, and the evaluation of a cable is found by equal texts, not by equal times: while the
    /// digits are the stored ones, so is the text, which other programs may have written without milliseconds.
    void bindStored(IDatabase& db, IValueConverter& values, const std::shared_ptr<Rating>& entity) const override
    {
        if (!Database::Backend::of(db).hasLooseColumns())
            return;
        QSqlQuery& query = db.PreparedQuery(QStringLiteral("SELECT measuretime FROM qor_rating WHERE id = :id"));
        const auto stored = db.Converter(query);
        stored->bindValue(QStringLiteral(":id"), entity->Id());
        db.Exec(query);
        const QDateTime time = entity->measureTime().toLocalTime();
        if (query.next() && stored->toDateTime(0).date() == time.date() && stored->toDateTime(0).time() == time.time())
            values.bindValue(QStringLiteral(":measuretime"), stored->toString(0));
        query.finish();
    }
};

} // namespace

RatingRepository::RatingRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                   const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("qor_rating"), strategy, manager, std::make_shared<RatingMapping>(),
                       parent)
{}

RatingRepository::~RatingRepository() = default;

template class EntityRepository<Cables::Entities::Rating>;

} // namespace DataAccess::Repositories
