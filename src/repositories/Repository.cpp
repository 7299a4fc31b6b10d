#include "repositories/Repository.h"

#include "database/BatchCache.h"
#include "database/DbException.h"
#include "database/DbWorker.h"
#include "database/GenericDml.h"
#include "database/LoggingCategories.h"
#include "database/Operation.h"
#include "repositories/RepositoryCache.h"

#include <optional>
#include <stdexcept>
#include <utility>

namespace DataAccess::Repositories {

using Database::GenericDml;
using Exceptions::DbException;
using Interfaces::IDatabase;
using QOR::Entities::Entity;

namespace {

template <typename RowOperation>
bool runForEachRow(IDatabase& db, const std::vector<std::shared_ptr<Entity>>& entities, const RowOperation& change,
                   const Database::Operation& operation, const char* function)
{
    QUuid row;
    try {
        std::optional<Database::BatchCache> cache; // ends after the transaction, which may be lost
        Database::Transaction transaction = db.WriteTransaction();
        if (!transaction.isOpen())
            return false; // The connection has told why.
        for (const std::shared_ptr<Entity>& entity : entities) {
            row = entity ? entity->Id() : QUuid();
            const Database::FailureWatch watch;
            if (change(db, entity.get())) {
                if (!cache)
                    cache.emplace(db, entities.size());
                continue;
            }
            qCCritical(lcDatabase) << function << row << "failed";
            // Each further row would wait in vain for a database that is locked or out of reach; and what is written
            // after the backend gave the transaction up would stay, as one half of the batch.
            if (watch.isUnavailable() || transaction.wasLost())
                return false;
        }
        if (transaction.commit())
            return true;
        operation.commitFailed(transaction);
        return false;
    } catch (const DbException& error) {
        operation.failed(db, error, row);
        return false;
    }
}

} // namespace

void warnOfUnsuitableRepository(const char* function)
{
    const char* const reason = "The repository behind the cache cannot answer this query";
    qCWarning(lcDatabase) << function << reason;
    Database::FailureWatch::report({QString::fromLatin1(reason), Database::Failure::Kind::Statement, {}, {}});
}

struct Repository::Data
{
    Database::DbWorker* worker;
    std::shared_ptr<Database::JobQueue> queue;
    QString table;
    Enumerations::LoadingStrategies strategy;
    std::weak_ptr<Manager::AbstractRepositoryManager> manager;
};

Repository::Repository(Database::DbWorker* worker, const QString& table, Enumerations::LoadingStrategies strategy,
                       const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : QObject(parent)
    , m_data(
          std::make_unique<Data>(Data{worker, worker != nullptr ? worker->queue() : nullptr, table, strategy, manager}))
{}

Repository::~Repository() = default;

Database::DbWorker* Repository::dbWorker() const
{
    return m_data->worker;
}

const QString& Repository::table() const
{
    return m_data->table;
}

Enumerations::LoadingStrategies Repository::loadingStrategy() const
{
    return m_data->strategy;
}

std::shared_ptr<Manager::AbstractRepositoryManager> Repository::manager() const
{
    return m_data->manager.lock();
}

void Repository::enqueue(Database::Job job)
{
    if (m_data->worker == nullptr)
        throw std::invalid_argument("worker nullptr");
    m_data->queue->push(std::move(job));
}

Database::Task<unsigned int>* Repository::count()
{
    return submit<unsigned int>([table = table()](IDatabase& db) { return GenericDml::count(db, table); });
}

Database::Task<bool>* Repository::del(EntityVector entities)
{
    const auto operation = [table = table()](IDatabase& db, Entity* entity) {
        return GenericDml::deleteFromTable(db, entity, table);
    };
    return forEachRow(std::move(entities), operation, Q_FUNC_INFO);
}

Database::Task<bool>* Repository::remove(EntityVector entities)
{
    const auto operation = [table = table()](IDatabase& db, Entity* entity) {
        return GenericDml::removeFromTable(db, entity, table);
    };
    return forEachRow(std::move(entities), operation, Q_FUNC_INFO);
}

Database::Task<bool>* Repository::forEachRow(EntityVector entities, RowOperation operation, const char* function)
{
    return submit<bool>(
        [table = table(), entities = std::move(entities), operation = std::move(operation), function](IDatabase& db) {
            return runForEachRow(db, entities, operation, Database::Operation(function, table), function);
        });
}

} // namespace DataAccess::Repositories
