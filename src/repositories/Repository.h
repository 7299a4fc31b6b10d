#pragma once

#include "database/LoadingStrategies.h"
#include "database/Task.h"
#include "entities/qor/Entity.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace DataAccess::Database {
class DbWorker;
}
namespace DataAccess::Manager {
class AbstractRepositoryManager;
}

namespace DataAccess::Repositories {

/**
 * What all repositories share: the worker, the table, and the operations that need not know the columns.
 *
 * The worker is not owned. Jobs never refer to the repository itself, so that it may end while some of them wait.
 */
class DATAACCESS_EXPORT Repository : public QObject
{
    Q_OBJECT

public:
    /// Holds @p manager weakly. A null @p worker makes the first operation throw.
    Repository(Database::DbWorker* worker, const QString& table, Enumerations::LoadingStrategies strategy,
               const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~Repository() override;
    Repository(const Repository&) = delete;
    Repository& operator=(const Repository&) = delete;

protected:
    /// Entities of any kind.
    using EntityVector = std::vector<std::shared_ptr<QOR::Entities::Entity>>;

    /// What the constructor was given.
    Database::DbWorker* dbWorker() const;
    const QString& table() const;
    Enumerations::LoadingStrategies loadingStrategy() const;

    /// The manager that made the repository; null when it is gone.
    std::shared_ptr<Manager::AbstractRepositoryManager> manager() const;

    /// Queue what IRepository says of Count(), Delete() and Remove(). The caller owns the task.
    Database::Task<unsigned int>* count();
    Database::Task<bool>* del(EntityVector entities);
    Database::Task<bool>* remove(EntityVector entities);

    /// Changes the row of one entity, which may be null. Reports a failure and returns false.
    using RowOperation = std::function<bool(Interfaces::IDatabase&, QOR::Entities::Entity*)>;
    /// Queues @p operation on each entity in one transaction. One that gives false does not stop the others, unless it
    /// reported that the database is locked or out of reach. Then, as with a DbException, nothing of the batch is kept.
    Database::Task<bool>* forEachRow(EntityVector entities, RowOperation operation, const char* function);

    /// Queues @p job on the worker. The caller owns the task. Throws std::invalid_argument without a worker.
    template <typename Result>
    Database::Task<Result>* submit(std::function<Result(Interfaces::IDatabase&)> job)
    {
        auto task = std::make_unique<Database::Task<Result>>(std::move(job));
        enqueue(task->toJob());
        return task.release();
    }
    /// Queues @p job without a task to wait for. Throws std::invalid_argument without a worker.
    void enqueue(Database::Job job);

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Repositories
