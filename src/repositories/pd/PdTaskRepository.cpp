#include "repositories/pd/PdTaskRepository.h"

namespace DataAccess::Repositories {

using PD::Entities::PdTask;

namespace {

class PdTaskMapping final : public EntityMapping<PdTask>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral(
                "SELECT id, cable, creationdate, station, tester, path, comment, devices, kvtrrecommentation, timestamp, deleted, snap FROM %1"),
            QStringLiteral(
                "SELECT id, cable, creationdate, station, tester, path, comment, devices, kvtrrecommentation, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, cable, creationdate, station, tester, path, comment, devices, kvtrrecommentation, snap, deleted, timestamp) VALUES (:id, :cable, :creationdate, :station, :tester, :path, :comment, :devices, :kvtrrecommentation, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE %1 SET "cable" = :cable, "creationdate" = :creationdate, "station" = :station, "tester" = :tester, "path" = :path, "comment" = :comment, "devices" = :devices, "kvtrrecommentation" = :kvtrrecommentation, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {9, 10, 11}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<PdTask>& entity) const override
    {
        entity->SetCableId(row.toUuid(1));
        entity->SetCreationDate(row.toDateTime(2));
        entity->SetStationId(row.toUuid(3));
        entity->SetTester(row.toString(4));
        entity->SetPath(row.toString(5));
        entity->SetComment(row.toString(6));
        entity->SetDevicesFromText(row.toString(7));
        entity->SetKvtrRecommentation(row.toString(8));
    }

    void bind(Interfaces::IValueConverter& values, const PdTask& entity) const override
    {
        values.bindValue(QStringLiteral(":cable"), entity.CableId());
        // Stored without a time zone and read as local time, and so written as local time too.
        values.bindValue(QStringLiteral(":creationdate"), entity.CreationDate().toLocalTime());
        values.bindValue(QStringLiteral(":station"), entity.StationId());
        values.bindValue(QStringLiteral(":tester"), entity.Tester());
        values.bindValue(QStringLiteral(":path"), entity.Path());
        values.bindValue(QStringLiteral(":comment"), entity.Comment());
        values.bindValue(QStringLiteral(":devices"), entity.DevicesText());
        values.bindValue(QStringLiteral(":kvtrrecommentation"), entity.KvtrRecommentations());
    }
};

} // namespace

PdTaskRepository::PdTaskRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                   const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("pd_task"), strategy, manager, std::make_shared<PdTaskMapping>(), parent)
{}

PdTaskRepository::~PdTaskRepository() = default;

template class EntityRepository<PD::Entities::PdTask>;

} // namespace DataAccess::Repositories
