#pragma once

#include "repositories/IRepository.h"
#include "repositories/Repository.h"

#include <functional>
#include <memory>
#include <vector>

namespace DataAccess::Repositories {

template <typename T>
class EntityMapping;
struct Bookkeeping;
enum class Write;

/**
 * The repository of one entity table. A concrete one gives the name of the table and its mapping; all else is here: the
 * jobs, the transaction, the id, the flags, the time stamp, the logging. Made once for each kind, in the source file of
 * the concrete one.
 */
template <typename T>
class DATAACCESS_EXPORT EntityRepository : public Repository, public Interfaces::IRepository<T>
{
public:
    /// See IRepository.
    using Entities = typename Interfaces::IRepository<T>::Entities;
    /// See IRepository.
    using EntityList = typename Interfaces::IRepository<T>::EntityList;
    /// See IRepository.
    template <typename Result>
    using Task = Database::Task<Result>;

    /// See IRepository.
    Task<Entities>* GetAllAsync() override;
    Task<std::shared_ptr<T>>* GetByIdAsync(QUuid id) override;
    Task<bool>* InsertAsync(EntityList entities) override;
    Task<bool>* UpdateAsync(EntityList entities) override;
    Task<bool>* DeleteAsync(EntityList entities) override;
    Task<bool>* RemoveAsync(EntityList entities) override;
    Task<unsigned int>* CountAsync() override;

protected:
    /// How the entities are stored.
    using Mapping = EntityMapping<T>;

    /// See Repository; @p mapping is shared with the jobs.
    EntityRepository(Database::DbWorker* worker, const QString& table, Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                     std::shared_ptr<const Mapping> mapping, QObject* parent);

    /// Queues the select that @p statementFor gives for the database, with the columns of get all.
    Task<Entities>* getRows(std::function<QString(Interfaces::IDatabase&)> statementFor, const Bookkeeping& columns,
                            const char* function);
    /// Queues @p statement for one id, with the columns of get by id.
    Task<Entities>* getRowsById(const QString& statement, const QUuid& id, const char* function);

    /// What the constructor was given.
    const std::shared_ptr<const Mapping>& mapping() const { return m_mapping; }

private:
    Task<bool>* write(Write kind, EntityList entities, const char* function);

    std::shared_ptr<const Mapping> m_mapping;
};

} // namespace DataAccess::Repositories
