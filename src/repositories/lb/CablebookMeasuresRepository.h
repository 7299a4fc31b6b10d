#pragma once

#include "entities/lb/CablebookMeasure.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

/**
 * The links of the measurements of the cable book to the cable network; table `cablebook_measures`.
 *
 * The key of a row is the number of the measurement: the link's MeasureId() or, when that is 0, the number that its id
 * was made from. A link with neither cannot be stored. A deleted row bears the date of its deletion; its time stamp is
 * the time of its last edit.
 */
class DATAACCESS_EXPORT CablebookMeasuresRepository : public EntityRepository<LB::Entities::CablebookMeasure>
{
    Q_OBJECT

public:
    CablebookMeasuresRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                QObject* parent = nullptr);
    ~CablebookMeasuresRepository() override;

    Task<bool>* DeleteAsync(EntityList entities) override;
    Task<bool>* RemoveAsync(EntityList entities) override;

private:
    /// Queues @p statement, which changes the row of one key, for each of @p entities.
    Task<bool>* forEachMeasure(const EntityList& entities, const QString& statement, const char* function,
                               std::function<void(Interfaces::IValueConverter&)> bindMore);
};

} // namespace DataAccess::Repositories
