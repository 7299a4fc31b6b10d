#pragma once

#include "repositories/EntityRepository.h"
#include "repositories/private/EntityBatch.h"
#include "repositories/private/EntityRows.h"

#include <utility>

/// The operations of an EntityRepository. The source file of a concrete one includes this and makes the class.
namespace DataAccess::Repositories {

template <typename T>
EntityRepository<T>::EntityRepository(Database::DbWorker* worker, const QString& table,
                                      Enumerations::LoadingStrategies strategy,
                                      const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                      std::shared_ptr<const Mapping> mapping, QObject* parent)
    : Repository(worker, table, strategy, manager, parent)
    , m_mapping(std::move(mapping))
{}

template <typename T>
auto EntityRepository<T>::GetAllAsync() -> Task<Entities>*
{
    const auto statement = [table = table(), mapping = m_mapping](Interfaces::IDatabase& db) {
        return EntityRows::withTable(mapping->getAll(db), table);
    };
    return getRows(statement, m_mapping->statements().bookkeeping, Q_FUNC_INFO);
}

template <typename T>
auto EntityRepository<T>::GetByIdAsync(QUuid id) -> Task<std::shared_ptr<T>>*
{
    return submit<std::shared_ptr<T>>(
        [table = table(), mapping = m_mapping, id, function = Q_FUNC_INFO](Interfaces::IDatabase& db) {
            return EntityRows::readById(db, table, id, *mapping, function);
        });
}

template <typename T>
auto EntityRepository<T>::InsertAsync(EntityList entities) -> Task<bool>*
{
    return write(Write::Insert, std::move(entities), Q_FUNC_INFO);
}

template <typename T>
auto EntityRepository<T>::UpdateAsync(EntityList entities) -> Task<bool>*
{
    return write(Write::Update, std::move(entities), Q_FUNC_INFO);
}

template <typename T>
auto EntityRepository<T>::DeleteAsync(EntityList entities) -> Task<bool>*
{
    return del(EntityVector(entities.begin(), entities.end()));
}

template <typename T>
auto EntityRepository<T>::RemoveAsync(EntityList entities) -> Task<bool>*
{
    return remove(EntityVector(entities.begin(), entities.end()));
}

template <typename T>
auto EntityRepository<T>::CountAsync() -> Task<unsigned int>*
{
    return count();
}

template <typename T>
auto EntityRepository<T>::getRows(std::function<QString(Interfaces::IDatabase&)> statementFor,
                                  const Bookkeeping& columns, const char* function) -> Task<Entities>*
{
    return submit<Entities>([table = table(), mapping = m_mapping, statementFor = std::move(statementFor), columns,
                             function](Interfaces::IDatabase& db) {
        const auto statement = [&](Interfaces::IDatabase& database) { return QStringList(statementFor(database)); };
        const Database::Operation operation(function, table);
        return EntityRows::byId(EntityRows::read(db, statement, *mapping, columns, operation), *mapping);
    });
}

template <typename T>
auto EntityRepository<T>::getRowsById(const QString& statement, const QUuid& id, const char* function)
    -> Task<Entities>*
{
    auto text = [text = EntityRows::withId(statement, table(), m_mapping->idText(id))](Interfaces::IDatabase&) {
        return text;
    };
    return getRows(std::move(text), m_mapping->statements().bookkeeping, function);
}

template <typename T>
auto EntityRepository<T>::write(Write kind, EntityList entities, const char* function) -> Task<bool>*
{
    return submit<bool>([table = table(), mapping = m_mapping, kind, entities = std::move(entities),
                         function](Interfaces::IDatabase& db) {
        const Database::Operation operation(function, table);
        return EntityBatch<T>(db, *mapping, entities, operation).write(kind, table);
    });
}

} // namespace DataAccess::Repositories
