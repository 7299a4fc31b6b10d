#include "repositories/cables/StationRepository.h"

#include "repositories/cables/StationMapping.h"

namespace DataAccess::Repositories {

namespace {

const QString s_table = QStringLiteral("ce_station");

} // namespace

StationRepository::StationRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                     QObject* parent)
    : EntityRepository(worker, s_table, strategy, manager,
                       std::make_shared<StationMapping>(s_table, strategy != Enumerations::WithoutImages), parent)
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
