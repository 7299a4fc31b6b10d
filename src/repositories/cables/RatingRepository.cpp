#include "repositories/cables/RatingRepository.h"

#include "database/backends/Backend.h"
#include "repositories/private/EntityJobs.h"
#include "repositories/private/TableMapping.h"

namespace DataAccess::Repositories {

using Cables::Entities::Rating;
using Interfaces::IDatabase;
using Interfaces::IValueConverter;

namespace {

struct RatingTable : EntityTable
{
    using Entity = Rating;
    static constexpr char getAll[] =
        "SELECT id, mid, tid, cid, comment, evaluation, automatic, oldcable, eventselectionmodel, modeid, measuretime, timestamp, snap, deleted FROM %1";
    static constexpr char getById[] =
        "SELECT id, mid, tid, cid, comment, evaluation, automatic, oldcable, eventselectionmodel, modeid, measuretime, timestamp, snap, deleted FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, mid, tid, cid, comment, evaluation, automatic, oldcable, eventselectionmodel, modeid, measuretime, timestamp, snap, deleted)\n"
        "VALUES (:id, :mid, :tid, :cid, :comment, :evaluation, :automatic, :oldcable, :eventselectionmodel, :modeid, :measuretime, :timestamp, :snap, :deleted)";
    static constexpr char update[] =
        "UPDATE %1 SET \"mid\" = :mid, \"tid\" = :tid, \"cid\" = :cid, \"comment\" = :comment, \"evaluation\" = :evaluation, \"automatic\" = :automatic, \"oldcable\" = :oldcable,\n"
        "\"eventselectionmodel\" = :eventselectionmodel, \"modeid\" = :modeid, \"measuretime\" = :measuretime, \"timestamp\" = :timestamp, \"snap\" = :snap, \"deleted\" = :deleted WHERE id = :id";
    static constexpr std::tuple columns = {column<&Rating::measureID>("mid"),
                                           column<&Rating::taskID>("tid"),
                                           column<&Rating::cableID>("cid"),
                                           column<&Rating::comment>("comment"),
                                           column<&Rating::JsonFromRating>("evaluation"),
                                           column<&Rating::automatic>("automatic"),
                                           column<&Rating::oldCable>("oldcable"),
                                           column<&Rating::eventselectionmodel>("eventselectionmodel"),
                                           column<&Rating::modeId>("modeid"),
                                           column<&Rating::measureTime>("measuretime")};
};

class RatingMapping final : public TableMapping<RatingTable>
{
public:
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
