#pragma once

#include "repositories/EntityBatch.h"
#include "repositories/EntityRows.h"
#include "repositories/IRepository.h"
#include "repositories/Repository.h"

#include <memory>
#include <utility>
#include <vector>

namespace DataAccess::Repositories {

/**
 * The repository of one entity table. A concrete one gives the name of the table and its mapping; all else is here: the
 * jobs, the transaction, the id, the flags, the time stamp, the logging.
 */
template <typename T>
class DATAACCESS_EXPORT EntityRepository : public Repository, public Interfaces::IRepository<T>
{
public:
    /// See IRepository.
    using Entities = typename Interfaces::IRepository<T>::Entities;
    using EntityList = typename Interfaces::IRepository<T>::EntityList;
    template <typename Result>
    using Task = Database::Task<Result>;

    Task<Entities>* GetAllAsync() override
    {
        const auto statement = [table = table(), mapping = m_mapping](Interfaces::IDatabase& db) {
            return EntityRows::withTable(mapping->getAll(db), table);
        };
        return getRows(statement, m_mapping->statements().bookkeeping, Q_FUNC_INFO);
    }

    Task<std::shared_ptr<T>>* GetByIdAsync(QUuid id) override
    {
        return submit<std::shared_ptr<T>>(
            [table = table(), mapping = m_mapping, id, function = Q_FUNC_INFO](Interfaces::IDatabase& db) {
                return EntityRows::readById(db, table, id, *mapping, function);
            });
    }

    Task<bool>* InsertAsync(EntityList entities) override
    {
        return write(Write::Insert, std::move(entities), Q_FUNC_INFO);
    }

    Task<bool>* UpdateAsync(EntityList entities) override
    {
        return write(Write::Update, std::move(entities), Q_FUNC_INFO);
    }

    Task<bool>* DeleteAsync(EntityList entities) override
    {
        return del(EntityVector(entities.begin(), entities.end()));
    }

    Task<bool>* RemoveAsync(EntityList entities) override
    {
        return remove(EntityVector(entities.begin(), entities.end()));
    }

    Task<unsigned int>* CountAsync() override { return count(); }

protected:
    /// How the entities are stored.
    using Mapping = EntityMapping<T>;

    /// See Repository; @p mapping is shared with the jobs.
    EntityRepository(Database::DbWorker* worker, const QString& table, Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                     std::shared_ptr<const Mapping> mapping, QObject* parent)
        : Repository(worker, table, strategy, manager, parent)
        , m_mapping(std::move(mapping))
    {}

    /// Queues the select that @p statementFor gives for the database, with the columns of get all.
    Task<Entities>* getRows(std::function<QString(Interfaces::IDatabase&)> statementFor, Bookkeeping columns,
                            const char* function)
    {
        return submit<Entities>([table = table(), mapping = m_mapping, statementFor = std::move(statementFor), columns,
                                 function](Interfaces::IDatabase& db) {
            const auto statement = [&](Interfaces::IDatabase& database) { return QStringList(statementFor(database)); };
            const Database::Operation operation(function, table);
            return EntityRows::byId(EntityRows::read(db, statement, *mapping, columns, operation), *mapping);
        });
    }

    /// Queues @p statement for one id, with the columns of get by id.
    Task<Entities>* getRowsById(const QString& statement, const QUuid& id, const char* function)
    {
        auto text = [text = EntityRows::withId(statement, table(), m_mapping->idText(id))](Interfaces::IDatabase&) {
            return text;
        };
        return getRows(std::move(text), m_mapping->statements().bookkeeping, function);
    }

    /// What the constructor was given.
    const std::shared_ptr<const Mapping>& mapping() const { return m_mapping; }

private:
    Task<bool>* write(Write kind, EntityList entities, const char* function)
    {
        return submit<bool>([table = table(), mapping = m_mapping, kind, entities = std::move(entities),
                             function](Interfaces::IDatabase& db) {
            const Database::Operation operation(function, table);
            return EntityBatch<T>(db, *mapping, entities, operation).write(kind, table);
        });
    }

    std::shared_ptr<const Mapping> m_mapping;
};

} // namespace DataAccess::Repositories
