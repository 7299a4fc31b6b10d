#include "repositories/cables/StationRepository.h"

#include "repositories/private/EntityJobs.h"
#include "repositories/private/LoadedContent.h"
#include "repositories/private/TableMapping.h"

#include <QSqlQuery>

namespace DataAccess::Repositories {

using Cables::Entities::Station;
using Interfaces::IDatabase;
using Interfaces::IValueConverter;

namespace {

const QString s_table = QStringLiteral("ce_station");

struct StationTable : EntityTable
{
    using Entity = Station;
    static constexpr char getAll[] =
        "SELECT id, name, city, point, description, image, timestamp, deleted, snap FROM %1";
    static constexpr char getById[] =
        "SELECT  id, name, city, point, description, image, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, name, city, point, description, image, snap, deleted, timestamp) VALUES (:id, :name, :city, :point, :description, :image, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "name" = :name, "city" = :city, "point" = :point, "description" = :description, "image" = :image, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {
        column<&Station::Name>("name"), column<&Station::City>("city"), column<&Station::PointId>("point"),
        column<&Station::Description>("description"), column<&Station::Image>("image")};
};

/// How stations are stored. Used on the worker's thread only, where it also remembers which objects had their image.
class StationMapping final : public TableMapping<StationTable>
{
public:
    /// Without @p withImages images are not read along.
    explicit StationMapping(bool withImages)
        : m_withImages(withImages)
    {}

    void read(const IValueConverter& row, const std::shared_ptr<Station>& entity) const override
    {
        TableMapping::read(row, entity);
        if (!m_withImages)
            return;
        readLazy(row, *entity);
        remember(entity);
    }

    void bindStored(IDatabase& db, IValueConverter& values, const std::shared_ptr<Station>& entity) const override
    {
        if (!entity->Image().isNull() || m_hadImage.contains(entity))
            return;
        QSqlQuery query = LoadedContent<Station>::selectForUpdate(db, imageStatement(entity->Id()));
        if (query.next())
            LoadedContent<Station>::bindStored(db, values, QStringLiteral(":image"), query, 0);
    }

    bool usesConnection() const override { return true; }

    void written(const std::shared_ptr<Station>& entity) const override { remember(entity); }

    /// Reads the image of @p station from the database into the object.
    void loadImage(IDatabase& db, const std::shared_ptr<Station>& station) const
    {
        QSqlQuery query = db.Exec(imageStatement(station->Id()));
        if (!query.next())
            return;
        const auto state = station->EntityState();
        station->SetImage(db.Converter(query)->toImage(0));
        station->SetEntityState(state);
        remember(station);
    }

private:
    static QString imageStatement(const QUuid& id)
    {
        return QStringLiteral("SELECT  image FROM %1 WHERE id = '%2'").arg(s_table, id.toString());
    }

    void remember(const std::shared_ptr<Station>& station) const
    {
        // A stored image that could not be decoded counts as not loaded: an update must not wipe it either.
        if (!station->Image().isNull())
            m_hadImage.add(station);
    }

    bool m_withImages;
    mutable LoadedContent<Station> m_hadImage;
};

} // namespace

StationRepository::StationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                     QObject* parent)
    : EntityRepository(worker, s_table, strategy, manager,
                       std::make_shared<StationMapping>(strategy != Enumerations::WithoutImages), parent)
{}

StationRepository::~StationRepository() = default;

void StationRepository::LoadImage(std::shared_ptr<Cables::Entities::Station> station)
{
    if (!station)
        return;
    enqueue([mapping = std::static_pointer_cast<const StationMapping>(mapping()), station = std::move(station),
             function = Q_FUNC_INFO](Interfaces::IDatabase& db) {
        try {
            mapping->loadImage(db, station);
        } catch (const Exceptions::DbException& error) {
            Database::Operation(function, s_table).failed(db, error, station->Id());
        }
    });
}

template class EntityRepository<Cables::Entities::Station>;

} // namespace DataAccess::Repositories
